#include "support/panelprocess.h"
#include "support/privatebus.h"
#include "support/simulatorprocess.h"

#include <QTest>

namespace {

const QStringList s_oTasks{"1 scroll 20 applications, then tap an address",
                           "2 open an interface by a tap on or beside any of its rows",
                           "3 pick another of 12 interfaces",
                           "4 switch DHCP on and off",
                           "5 open date and time by a tap on either row",
                           "6 pick a zone by dragging and by typing a part of its name",
                           "7 set another day, month and year",
                           "8 set hour, minute and AM/PM, by steps and by holding",
                           "9 switch automatic update on and off",
                           "10 apply, see that it was taken, close"};
const QList<QSize> s_oSizes{{240, 320}, {320, 240}, {272, 480},  {480, 272},  {480, 320},
                            {481, 272}, {800, 480}, {600, 1024}, {1024, 600}, {1280, 800}};
// The system's order is eth1, eth0, eth3, ...
constexpr int s_nPatience = 5000;
const char s_szAddress[] = "10.0.0.101";
const char s_szNextAddress[] = "10.0.0.100";
const char s_szLastAddress[] = "10.0.0.110";

/** Tells that something has come to rest: seen at the same place for a while, as it turns back at an end. */
struct sStillness
{
    bool isStill(const QRect& oRect)
    {
        QTest::qWait(25);
        m_nSame = std::exchange(m_oRect, oRect) == oRect ? m_nSame + 1 : 0;
        return m_nSame >= 3;
    }

    QRect m_oRect;
    int m_nSame = 0;
};

/** One finger on the screen of a panel: it taps, drags and flings, and looks where it does. */
class Finger
{
public:
    Finger(const Display& oDisplay, PanelProcess& oPanel) : m_oDisplay(oDisplay), m_oPanel(oPanel) {}

    // Returns the visible widget with the name or, if there is none, the text.
    sWidget find(const QString& strWhat) { return find(m_oPanel.widgets(), strWhat); }
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

    // Drags the area until the middle of the widget can be touched, and returns where it is.
    QRect reach(const QString& strWhat)
    {
        sStillness oStillness;
        for (int i = 0; i < 200; ++i) {
            const QList<sWidget> oAll = m_oPanel.widgets();
            const sWidget oForm = find(oAll, "formArea");
            const QRect oArea = (oForm.isEmpty() ? find(oAll, "scrollArea") : oForm).rect();
            const sWidget oWidget = find(oAll, strWhat);
            const bool bStill = oStillness.isStill(oWidget.rect());
            const bool bSeen = oWidget["reachable"].toBool() && oArea.contains(oWidget.rect().center());
            if (bStill && bSeen) {
                return oWidget.rect();
            }
            if (bStill) {
                const int nBy = oArea.height() * (oWidget.rect().y() > oArea.y() ? -1 : 1) / 2;
                drag(oArea.center() - QPoint(0, nBy / 2), {0, nBy});
            }
        }
        return {};
    }

    // Flings the panel's rows until they end.
    bool flingToEnd(int nDirection)
    {
        return QTest::qWaitFor(
            [&] {
                const QList<sWidget> oAll = m_oPanel.widgets();
                const QRect oArea = find(oAll, "scrollArea").rect();
                const QRect oRows = find(oAll, "scrollAreaWidgetContents").rect();
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
        return QTest::qWaitFor([&] { return !entries().isEmpty(); }, s_nPatience);
    }

    // Taps an entry of the list that is open, once it is seen and stands still; drags the list until then.
    bool choose(const QString& strEntry)
    {
        sStillness oStillness;
        for (int i = 0; i < 400; ++i) {
            const QRect oEntry = sWidget{entries()}.rect(strEntry);
            const bool bStill = oStillness.isStill(oEntry);
            if (oEntry.height() >= 28 && bStill) {
                return tap(oEntry.center()) &&
                       QTest::qWaitFor([&] { return entries().isEmpty(); }, s_nPatience);
            }
            if (oEntry.height() < 28 && bStill) {
                const QRect oList = m_oList;
                drag(oList.center() + QPoint(0, oList.height() / 3), {0, -oList.height() * 2 / 3});
            }
            if (m_oList.isNull()) {
                return false; // a drag has closed it
            }
        }
        return false;
    }

    bool pick(const QString& strComboBox, const QString& strEntry)
    {
        return open(strComboBox) && choose(strEntry) &&
               m_oPanel.waitForText(strComboBox, strEntry) == strEntry;
    }

    // Closes the dialog by its button, which has to be in sight with all of it.
    bool close(const QString& strDialog)
    {
        const bool bOpen = QTest::qWaitFor([&] { return !find(strDialog).isEmpty(); }, s_nPatience);
        const QList<sWidget> oAll = m_oPanel.widgets();
        const QRect oScreen = find(oAll, "MorvaWidget").rect();
        bool bFits = bOpen && oScreen.contains(find(oAll, strDialog).rect());
        for (const char* szButton : {"applyButton", "closeButton"}) {
            const QRect oButton = find(oAll, szButton).rect();
            bFits = bFits && oScreen.contains(oButton) && oButton.height() >= 40;
        }
        tap(find(oAll, "closeButton").rect().center());
        return QTest::qWaitFor([&] { return find(strDialog).isEmpty(); }, s_nPatience) && bFits;
    }

    bool opensInterface(const QPoint& oPoint, const QString& strInterface)
    {
        tap(oPoint);
        const bool bShown =
            QTest::qWaitFor([&] { return text("interfaceList_comboBox") == strInterface; }, s_nPatience);
        return close("NetworkSettingsDialog") && bShown;
    }

private:
    static sWidget find(const QList<sWidget>& oWidgets, const QString& strWhat)
    {
        sWidget oFound;
        for (const sWidget& oWidget : oWidgets) {
            if (oWidget["visible"].toBool() && (oWidget.name() == strWhat || oWidget.text() == strWhat)) {
                oFound = oWidget;
            }
        }
        return oFound;
    }

    // Returns the entries of the list that is open.
    QJsonObject entries()
    {
        const QList<sWidget> oWidgets = m_oPanel.widgets();
        m_oList = {};
        for (const sWidget& oWidget : oWidgets) {
            if (!oWidget["entries"].toObject().isEmpty()) {
                m_oList = oWidget.rect();
                return oWidget["entries"].toObject();
            }
        }
        return {};
    }

    const Display& m_oDisplay;
    PanelProcess& m_oPanel;
    QRect m_oList; // that was open last
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

        QVector<bool> oDone;
        oDone += scrollsAndTaps(oPanel, oFinger);
        oPanel.send("n1\n");
        oDone += opensByAnyRow(oFinger);
        oFinger.tap(QString(s_szAddress));
        oDone += oFinger.pick("interfaceList_comboBox", "eth10") &&
                 oPanel.waitForText("ipAddress_LineEdit", s_szLastAddress) == s_szLastAddress;
        oDone += oFinger.pick("useDHCP_comboBox", "Yes") && oFinger.pick("useDHCP_comboBox", "No");
        const bool bApplied = applies(oFinger);
        oFinger.flingToEnd(-1);
        oFinger.tap(QString("systemDateForm_Label"));
        const bool bDate = oFinger.close("DateTimeDialog");
        oFinger.tap(QString("systemTime_Label"));
        oPanel.waitForText("ntpStatus_Label", "Last sync:64 secs ago");
        oDone += bDate && !oFinger.find("DateTimeDialog").isEmpty();
        oDone += findsZone(oDisplay, oPanel, oFinger);
        oDone += setsDate(oFinger);
        oDone += setsTime(oDisplay, oFinger);
        oDone += switchesUpdate(oFinger);
        oDone += oFinger.close("DateTimeDialog") && bApplied;
        m_oTable[QTest::currentDataTag()] = oDone;
        for (int i = 0; i < oDone.size(); ++i) {
            QVERIFY2(oDone[i], qPrintable(s_oTasks[i]));
        }
    }

    void cleanupTestCase()
    {
        for (auto it = m_oTable.begin(); it != m_oTable.end(); ++it) {
            QString strLine = it.key().leftJustified(10);
            for (int i = 0; i < it->size(); ++i) {
                strLine +=
                    QString(" %1:%2").arg(s_oTasks[i].section(' ', 0, 0), it->at(i) ? "done" : "FAILS");
            }
            qInfo().noquote() << strLine;
        }
    }

private:
    static bool scrollsAndTaps(PanelProcess& oPanel, Finger& oFinger)
    {
        oPanel.send("n20\n");
        const bool bRows = QTest::qWaitFor(
            [&] { return oFinger.find("scrollAreaWidgetContents").rect().height() > 2500; }, 5000);
        const bool bScrolled = oFinger.flingToEnd(-1) && oFinger.flingToEnd(1);
        return oFinger.opensInterface(oFinger.reach(s_szAddress).center(), "eth1") && bRows && bScrolled;
    }

    // On a caption, far beside the value, and in the gap above, as far as it is nearer to the row than to the
    // next.
    static bool opensByAnyRow(Finger& oFinger)
    {
        bool bOpens = true;
        const QRect oFirst = oFinger.reach(s_szAddress);
        const QRect oScreen = oFinger.find("scrollArea").rect();
        const int nGap = oScreen.width() > 480 ? 32 : 24;
        for (const QPoint oPoint : {QPoint(oScreen.left() + 8, oFirst.center().y()),
                                    QPoint(oScreen.right() - 40, oFirst.center().y()),
                                    QPoint(oFirst.center().x(), oFirst.bottom() + nGap / 2 - 2)}) {
            bOpens = oFinger.opensInterface(oPoint, "eth1") && bOpens;
        }
        const QRect oSecond = oFinger.reach(s_szNextAddress);
        const QPoint oAbove(oSecond.center().x(), oSecond.top() - nGap / 2 + 2);
        return oFinger.opensInterface(oAbove, "eth0") && bOpens;
    }

    bool applies(Finger& oFinger)
    {
        const int nBefore = m_oService.calls().filter("applyNewConfiguration").size();
        oFinger.tap(oFinger.find("applyButton").rect().center());
        const auto fnTaken = [&] {
            return m_oService.calls().filter("applyNewConfiguration").size() == nBefore + 1;
        };
        const bool bTaken = QTest::qWaitFor(fnTaken, s_nPatience);
        return oFinger.close("NetworkSettingsDialog") && bTaken;
    }

    static bool findsZone(const Display& oDisplay, PanelProcess& oPanel, Finger& oFinger)
    {
        const bool bDragged = oFinger.pick("timezone_ComboBox", "Europe/Tallinn");
        oFinger.tap(QString("timezone_ComboBox"));
        oDisplay.pointer("key ctrl+a type toky");
        return oFinger.choose("Asia/Tokyo") && bDragged &&
               oPanel.waitForText("timezone_ComboBox", "Asia/Tokyo") == "Asia/Tokyo";
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
        bool bSteps = true;
        for (auto it = oParts.begin(); it != oParts.end(); ++it) {
            const QRect oNow = oFinger.reach("currentDate_DateEdit");
            const QString strBefore = oFinger.text("currentDate_DateEdit");
            oFinger.tap(QPoint(oNow.left() + 8 + qRound(*it * nEm), oNow.center().y()));
            bSteps = QTest::qWaitFor([&] { return oFinger.text("stepPart") == it.key(); }, 2000) && bSteps;
            oFinger.tap(QString("stepUp"));
            bSteps =
                QTest::qWaitFor([&] { return oFinger.text("currentDate_DateEdit") != strBefore; }, 2000) &&
                bSteps;
        }
        const QRect oNow = oFinger.reach("currentDate_DateEdit");
        oFinger.tap(QPoint(oNow.left() + 8 + qRound(7.23 * nEm), oNow.center().y()));
        const QPoint oStep = oFinger.reach("stepUp").center();
        const int nBefore = oFinger.text("currentDate_DateEdit").midRef(14, 2).toInt();
        oDisplay.pointer(
            QString("mousemove %1 %2 mousedown 1 sleep 1.5 mouseup 1").arg(oStep.x()).arg(oStep.y()));
        const int nAfter = oFinger.text("currentDate_DateEdit").midRef(14, 2).toInt();
        return (nAfter + 60 - nBefore) % 60 > 3 && bSteps;
    }

    static bool switchesUpdate(Finger& oFinger)
    {
        bool bSwitches = true;
        for (int i = 0; i < 2; ++i) {
            const QRect oBox = oFinger.reach("autoUpdate_CheckBox");
            const bool bBefore = oFinger.find("autoUpdate_CheckBox")["checked"].toBool();
            oFinger.tap(QPoint(oBox.right() - 3, oBox.center().y()));
            bSwitches =
                QTest::qWaitFor(
                    [&] { return oFinger.find("autoUpdate_CheckBox")["checked"].toBool() != bBefore; },
                    2000) &&
                bSwitches;
        }
        return bSwitches;
    }

    PrivateBus m_oBus;
    SimulatorProcess m_oService;
    QMap<QString, QVector<bool>> m_oTable;
};

QTEST_GUILESS_MAIN(TestTouch)
#include "tst_touch.moc"
