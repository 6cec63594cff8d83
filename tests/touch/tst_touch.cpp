#include "support/panelprocess.h"
#include "support/privatebus.h"
#include "support/simulatorprocess.h"

#include <QTest>

namespace {

const QList<QSize> s_oSizes{{240, 320}, {320, 240}, {272, 480},  {480, 272},  {480, 320},
                            {481, 272}, {800, 480}, {600, 1024}, {1024, 600}, {1280, 800}};
// The system's order is eth1, eth0, eth3, ...
constexpr int s_nPatience = 10000;
constexpr int s_nFinger = 28; // least width and height of an entry or a day
const char s_szAddress[] = "10.0.0.101";
const char s_szNextAddress[] = "10.0.0.100";
const char s_szLastAddress[] = "10.0.0.110";

/** One finger on the screen of a panel: it taps, drags and flings, and looks where it does. */
class Finger
{
public:
    Finger(const Display& oDisplay, PanelProcess& oPanel) : m_oDisplay(oDisplay), m_oPanel(oPanel) {}

    // Returns what is visible and has the name or shows the text, the entries of the open list included.
    sWidget find(const QString& strWhat)
    {
        look();
        return seen(strWhat);
    }

    QString text(const QString& strWhat) { return find(strWhat).text(); }
    bool tap(const QPoint& oPoint) { return m_oDisplay.tap(oPoint); }
    bool tap(const QString& strWhat) { return tap(reach(strWhat).center()); }

    void drag(const QPoint& oFrom, const QPoint& oBy, bool bRest = true)
    {
        QString strWords = QString("mousemove %1 %2 mousedown 1").arg(oFrom.x()).arg(oFrom.y());
        for (int i = 1; i <= 6; ++i) {
            const QPoint oPoint = oFrom + oBy * i / 6;
            strWords += QString(" mousemove %1 %2 sleep 0.01").arg(oPoint.x()).arg(oPoint.y());
        }
        m_oDisplay.pointer(strWords + (bRest ? " sleep 0.1 mouseup 1" : " mouseup 1"));
    }

    // Drags what scrolls until the middle of the widget can be touched and stands still; returns where it is.
    QRect reach(const QString& strWhat)
    {
        QRect oBefore;
        for (int i = 0, nSame = 0; i < 400; ++i) {
            QTest::qWait(25);
            const sWidget oWidget = find(strWhat);
            const QRect oRect = oWidget.rect();
            nSame = std::exchange(oBefore, oRect) == oRect ? nSame + 1 : 0;
            if (nSame < 3) {
                continue; // it may move on, or turn back at an end
            }
            if (oWidget["reachable"].toBool() && m_oArea.contains(oRect.center())) {
                return oRect;
            }
            const int nBy = m_oArea.height() * (oRect.isEmpty() || oRect.y() > m_oArea.y() ? -1 : 1) / 2;
            drag(m_oArea.center() - QPoint(0, nBy / 2), {0, nBy});
        }
        return {};
    }

    // Flings the panel's rows until they end.
    bool flingToEnd(int nDirection)
    {
        return QTest::qWaitFor(
            [&] {
                const QRect oRows = find("scrollAreaWidgetContents").rect();
                const QRect oArea = m_oArea;
                if (nDirection < 0 ? oRows.bottom() <= oArea.bottom() : oRows.top() >= oArea.top()) {
                    return true;
                }
                const int nBy = nDirection * oArea.height() * 2 / 3;
                drag(oArea.center() - QPoint(0, nBy / 2), {0, nBy}, false);
                return false;
            },
            20000);
    }

    // Opens a list by its right end.
    bool open(const QString& strField)
    {
        const QRect oField = reach(strField);
        tap(QPoint(oField.right() - 4, oField.center().y()));
        return waitFor([this] { return m_bListOpen; });
    }

    bool choose(const QString& strEntry)
    {
        return tap(strEntry) && waitFor([this] { return !m_bListOpen; });
    }

    bool pick(const QString& strComboBox, const QString& strEntry)
    {
        return open(strComboBox) && choose(strEntry) && shows(strComboBox, strEntry);
    }

    bool shows(const QString& strField, const QString& strText)
    {
        return waitFor([&] { return seen(strField).text() == strText; });
    }

    // Waits for what is seen.
    template<class FN>
    bool waitFor(FN fnIsSo)
    {
        const auto fnLooks = [&] {
            look();
            return fnIsSo();
        };
        return QTest::qWaitFor(fnLooks, s_nPatience);
    }

    // Closes the dialog by its button, which has to be in sight with all of it.
    bool close(const QString& strDialog)
    {
        bool bFits = waitFor([&] { return !seen(strDialog).isEmpty(); });
        const QRect oScreen = seen("MorvaWidget").rect();
        bFits = bFits && oScreen.contains(seen(strDialog).rect());
        for (const char* szButton : {"applyButton", "closeButton"}) {
            const QRect oButton = seen(szButton).rect();
            bFits = bFits && oScreen.contains(oButton) && oButton.height() >= 40;
        }
        tap(seen("closeButton").rect().center());
        return waitFor([&] { return seen(strDialog).isEmpty(); }) && bFits;
    }

    bool opensInterface(const QPoint& oPoint, const QString& strInterface)
    {
        const bool bShown = tap(oPoint) && shows("interfaceList_comboBox", strInterface);
        return close("NetworkSettingsDialog") && bShown;
    }

private:
    void look()
    {
        const QList<sWidget> oWidgets = m_oPanel.widgets();
        QList<sWidget> oEntries;
        m_oSeen.clear();
        for (const sWidget& oWidget : oWidgets) {
            if (oWidget["visible"].toBool()) {
                m_oSeen += oWidget;
            }
            const QJsonObject oTexts = oWidget["entries"].toObject();
            for (auto it = oTexts.begin(); it != oTexts.end(); ++it) {
                sWidget oEntry{{{"text", it.key()}, {"rect", it.value()}}};
                const QSize oSize = oEntry.rect().size();
                oEntry["reachable"] = qMin(oSize.width(), oSize.height()) >= s_nFinger;
                oEntries += oEntry;
            }
            m_oArea = oTexts.isEmpty() ? m_oArea : oWidget.rect();
        }
        m_oSeen += oEntries;
        m_bListOpen = !oEntries.isEmpty();
        if (!m_bListOpen) {
            const sWidget oForm = seen("formArea");
            m_oArea = (oForm.isEmpty() ? seen("scrollArea") : oForm).rect();
        }
    }

    sWidget seen(const QString& strWhat) const
    {
        const auto fnIsIt = [&](const sWidget& o) { return o.name() == strWhat || o.text() == strWhat; };
        const auto it = std::find_if(m_oSeen.rbegin(), m_oSeen.rend(), fnIsIt);
        return it == m_oSeen.rend() ? sWidget() : *it;
    }

    const Display& m_oDisplay;
    PanelProcess& m_oPanel;
    QList<sWidget> m_oSeen; // windows that were opened last, and then the entries, come last
    QRect m_oArea;          // what a drag moves: the open list, the dialog's fields or the panel's rows
    bool m_bListOpen = false;
};

} // namespace

/** What an operator does with one finger, on a real display of every size. */
class TestTouch : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QCOMPARE(QProcess::execute("ip", {"link", "add", "eth0", "type", "veth", "peer", "name", "eth1"}), 0);
        QCOMPARE(QProcess::execute(DEVICE_TOOLS, {}), 0);
        QVERIFY(m_oBus.start());
        qputenv("DBUS_SYSTEM_BUS_ADDRESS", m_oBus.address().toUtf8());
        QVERIFY(m_oService.start(m_oBus));
        QStringList oInterfaces;
        for (int i = 0; i < 12; ++i) {
            oInterfaces += QString(R"({"name":"eth%1","ip_address":"10.0.0.%2"})").arg(i).arg(100 + i);
        }
        QVERIFY(m_oService.setDocument(R"({"version":1,"interfaces":[)" + oInterfaces.join(',') + "]}"));
    }

    // Where nothing scrolls any more a drag is no tap, and a tap after it is one.
    void tapsWhereNothingScrolls()
    {
        const Display oDisplay({600, 1024});
        PanelProcess oPanel(oDisplay.name());
        Finger oFinger(oDisplay, oPanel);
        QVERIFY(oPanel.start());
        oPanel.send("n30\n");
        QTRY_VERIFY(oFinger.find("scrollAreaWidgetContents").rect().height() > 2000);
        oFinger.drag({300, 700}, {0, -200});
        oPanel.send("n1\n");
        QTRY_VERIFY(oFinger.find("scrollAreaWidgetContents").rect().height() < 1000);
        const QPoint oAddress = oFinger.find(s_szAddress).rect().center();
        for (const QPoint oBy : {QPoint(0, 60), QPoint(0, -60), QPoint(60, 0), QPoint(-60, 0)}) {
            oFinger.drag(oAddress, oBy);
            QVERIFY(oFinger.find("NetworkSettingsDialog").isEmpty());
        }
        QVERIFY(oFinger.opensInterface(oAddress, "eth1"));
    }

    void worksEverywhere_data()
    {
        for (int i = 2; i < 12; i += 2) {
            QProcess::execute("ip", {"link", "add", QString("eth%1").arg(i), "type", "veth", "peer", "name",
                                     QString("eth%1").arg(i + 1)});
        }
        QTest::addColumn<QSize>("size");
        for (const QSize& oSize : s_oSizes) {
            QTest::addRow("%dx%d", oSize.width(), oSize.height()) << oSize;
        }
    }

    void worksEverywhere()
    {
        QFETCH(QSize, size);
        const Display oDisplay(size);
        PanelProcess oPanel(oDisplay.name());
        Finger oFinger(oDisplay, oPanel);
        QVERIFY(oPanel.start());

        QVERIFY(scrollsAndTaps(oPanel, oFinger));
        oPanel.send("n1\n");
        QVERIFY(opensByAnyRow(oFinger));
        QVERIFY(oFinger.tap(QString(s_szAddress)));
        QVERIFY(oFinger.pick("interfaceList_comboBox", "eth10"));
        QVERIFY(oFinger.shows("ipAddress_LineEdit", s_szLastAddress));
        QVERIFY(oFinger.pick("useDHCP_comboBox", "Yes") && oFinger.pick("useDHCP_comboBox", "No"));
        QVERIFY(applies(oFinger));
        QVERIFY(oFinger.flingToEnd(-1) && oFinger.tap(QString("systemDateForm_Label")));
        QVERIFY(oFinger.close("DateTimeDialog"));
        QVERIFY(oFinger.tap(QString("systemTime_Label")));
        QVERIFY(oFinger.shows("ntpStatus_Label", "Last sync:64 secs ago"));
        QVERIFY(findsZone(oDisplay, oFinger));
        QVERIFY(setsDate(oFinger));
        QVERIFY(setsTime(oDisplay, oFinger));
        QVERIFY(switchesUpdate(oFinger) && switchesUpdate(oFinger));
        QVERIFY(oFinger.close("DateTimeDialog"));
    }

private:
    static bool scrollsAndTaps(PanelProcess& oPanel, Finger& oFinger)
    {
        oPanel.send("n20\n");
        return oFinger.waitFor([&] {
            return oFinger.find("scrollAreaWidgetContents").rect().height() > 2500;
        }) && oFinger.flingToEnd(-1) &&
               oFinger.flingToEnd(1) && oFinger.opensInterface(oFinger.reach(s_szAddress).center(), "eth1");
    }

    // On a caption, far beside the value, and in the gap above, as far as it is nearer to the row than to the
    // next.
    static bool opensByAnyRow(Finger& oFinger)
    {
        const QRect oFirst = oFinger.reach(s_szAddress);
        const QRect oScreen = oFinger.find("scrollArea").rect();
        const int nGap = oScreen.width() > 480 ? 32 : 24;
        return oFinger.opensInterface({oScreen.left() + 8, oFirst.center().y()}, "eth1") &&
               oFinger.opensInterface({oScreen.right() - 40, oFirst.center().y()}, "eth1") &&
               oFinger.opensInterface({oFirst.center().x(), oFirst.bottom() + nGap / 2 - 2}, "eth1") &&
               oFinger.opensInterface(
                   oFinger.reach(s_szNextAddress).adjusted(0, 2 - nGap / 2, 0, 0).topLeft(), "eth0");
    }

    bool applies(Finger& oFinger)
    {
        const auto fnApplied = [&] { return m_oService.calls().filter("applyNewConfiguration").size(); };
        const int nBefore = fnApplied();
        return oFinger.tap(oFinger.find("applyButton").rect().center()) &&
               oFinger.waitFor([&] { return fnApplied() == nBefore + 1; }) &&
               oFinger.close("NetworkSettingsDialog");
    }

    static bool findsZone(const Display& oDisplay, Finger& oFinger)
    {
        return oFinger.pick("timezone_ComboBox", "Europe/Tallinn") &&
               oFinger.tap(QString("timezone_ComboBox")) && oDisplay.pointer("key ctrl+a type toky") &&
               oFinger.choose("Asia/Tokyo") && oFinger.shows("timezone_ComboBox", "Asia/Tokyo");
    }

    static bool setsDate(Finger& oFinger)
    {
        const QDate oToday = QDate::currentDate();
        bool bOpen = oFinger.open("currentDate_DateEdit");
        for (const char* szButton : {"previousYear", "nextMonth"}) {
            bOpen = oFinger.tap(oFinger.find(szButton).rect().center()) && bOpen;
        }
        const QString strDate = oToday.addYears(-1).addMonths(1).toString("15/MM/yyyy");
        return bOpen && oFinger.choose("15") && oFinger.text("currentDate_DateEdit").startsWith(strDate);
    }

    // Taps each part of the time, whose place follows from the width of digits, and steps it.
    static bool setsTime(const Display& oDisplay, Finger& oFinger)
    {
        const double nEm = oFinger.find("MorvaWidget").rect().width() > 480 ? 20 : 16;
        const QMap<QString, double> oParts{{"Hour", 5.84}, {"Minute", 7.23}, {"AM/PM", 8.9}};
        const auto fnTapPart = [&](double nEms) {
            const QRect oNow = oFinger.reach("currentDate_DateEdit");
            return oFinger.tap(QPoint(oNow.left() + 8 + qRound(nEms * nEm), oNow.center().y()));
        };
        const auto fnShown = [&] { return oFinger.text("currentDate_DateEdit"); };
        for (auto it = oParts.begin(); it != oParts.end(); ++it) {
            const QString strBefore = fnShown();
            if (!fnTapPart(*it) || !oFinger.shows("stepPart", it.key()) || !oFinger.tap(QString("stepUp")) ||
                !oFinger.waitFor([&] { return fnShown() != strBefore; })) {
                return false;
            }
        }
        fnTapPart(oParts["Minute"]);
        const QPoint oStep = oFinger.reach("stepUp").center();
        const int nBefore = fnShown().midRef(14, 2).toInt();
        oDisplay.pointer(
            QString("mousemove %1 %2 mousedown 1 sleep 1.5 mouseup 1").arg(oStep.x()).arg(oStep.y()));
        return (fnShown().midRef(14, 2).toInt() + 60 - nBefore) % 60 > 3;
    }

    static bool switchesUpdate(Finger& oFinger)
    {
        const QRect oBox = oFinger.reach("autoUpdate_CheckBox");
        const auto fnIsOn = [&] { return oFinger.find("autoUpdate_CheckBox")["checked"].toBool(); };
        const bool bBefore = fnIsOn();
        return oFinger.tap(QPoint(oBox.right() - 3, oBox.center().y())) &&
               oFinger.waitFor([&] { return fnIsOn() != bBefore; });
    }

    PrivateBus m_oBus;
    SimulatorProcess m_oService;
};

QTEST_GUILESS_MAIN(TestTouch)
#include "tst_touch.moc"
