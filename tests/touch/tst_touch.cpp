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
                           "10 apply, see that it was taken, close"};
const QList<QSize> s_oSizes{{240, 320}, {320, 240}, {272, 480},  {480, 272},  {480, 320},
                            {481, 272}, {800, 480}, {600, 1024}, {1024, 600}, {1280, 800}};
// The system's order is eth1, eth0, eth3, ...
const char s_szAddress[] = "10.0.0.101";
const char s_szNextAddress[] = "10.0.0.100";
const char s_szLastAddress[] = "10.0.0.110";

/** One finger on the screen of a panel: it taps, drags and flings, and looks where it does. */
class Finger
{
public:
    Finger(const Display& oDisplay, PanelProcess& oPanel) : m_oDisplay(oDisplay), m_oPanel(oPanel) {}

    // Returns the visible widget with the name or, if there is none, the text.
    sWidget find(const QString& strWhat)
    {
        sWidget oFound;
        const QList<sWidget> oWidgets = m_oPanel.widgets();
        for (const sWidget& oWidget : oWidgets) {
            if (oWidget["visible"].toBool() && (oWidget.name() == strWhat || oWidget.text() == strWhat)) {
                oFound = oWidget;
            }
        }
        return oFound;
    }

    bool tap(const QPoint& oPoint) { return m_oDisplay.tap(oPoint); }
    bool tap(const QString& strWhat) { return tap(reach(strWhat).center()); }

    void drag(const QPoint& oFrom, const QPoint& oBy, bool bRest = true)
    {
        QString strWords = QString("mousemove %1 %2 mousedown 1").arg(oFrom.x()).arg(oFrom.y());
        for (int i = 1; i <= 8; ++i) {
            const QPoint oPoint = oFrom + oBy * i / 8;
            strWords += QString(" mousemove %1 %2 sleep 0.012").arg(oPoint.x()).arg(oPoint.y());
        }
        m_oDisplay.pointer(strWords + (bRest ? " sleep 0.15 mouseup 1" : " mouseup 1"));
        QRect oBefore;
        (void)QTest::qWaitFor([&] { // until all stands still
            QTest::qWait(40);
            return std::exchange(oBefore, moving()) == oBefore;
        });
    }

    // Drags the area until the middle of the widget can be touched, and returns where it is.
    QRect reach(const QString& strWhat)
    {
        const QString strArea = find("formArea").isEmpty() ? "scrollArea" : "formArea";
        const QRect oArea = find(strArea).rect();
        for (int i = 0; i < 60; ++i) {
            const sWidget oWidget = find(strWhat);
            if (oWidget["reachable"].toBool()) {
                return oWidget.rect();
            }
            const int nBy = oArea.height() * (oWidget.rect().y() > oArea.y() ? -1 : 1) * 2 / 3;
            drag(oArea.center() - QPoint(0, nBy / 2), {0, nBy});
        }
        return {};
    }

    // Flings the panel's rows until they end.
    bool flingToEnd(int nDirection)
    {
        const QRect oArea = find("scrollArea").rect();
        QRect oBefore;
        for (int i = 0; i < 60 && oBefore != moving(); ++i) {
            oBefore = moving();
            drag(oArea.center() - QPoint(0, nDirection * oArea.height() / 3),
                 {0, nDirection * oArea.height() * 2 / 3}, false);
        }
        const QRect oRows = moving();
        return nDirection < 0 ? oRows.bottom() <= oArea.bottom() : oRows.top() >= oArea.top();
    }

    // Opens a list by its right end, drags it until the entry is seen, and taps that.
    bool pick(const QString& strComboBox, const QString& strEntry)
    {
        const QString strOld = find(strComboBox).text();
        const QRect oComboBox = reach(strComboBox);
        tap(QPoint(oComboBox.right() - 4, oComboBox.center().y()));
        for (int i = 0; i < 60 && QTest::qWaitFor([&] { return !list().isEmpty(); }, 1000); ++i) {
            const QRect oList = list().rect();
            const QJsonObject oRows = list()["rows"].toObject();
            const QRect oRow = sWidget{oRows}.rect(strEntry);
            if (oRow.height() >= 36) {
                tap(oRow.center());
                return m_oPanel.waitForText(strComboBox, strEntry) == strEntry && list().isEmpty();
            }
            drag(oList.center() + QPoint(0, oList.height() / 3), {0, -oList.height() * 2 / 3});
            if (find(strComboBox).text() != strOld) {
                return false; // the drag has chosen
            }
        }
        return false;
    }

    // Closes the dialog by its button, which has to be in sight with all of it.
    bool close(const QString& strDialog)
    {
        const QRect oScreen = m_oPanel.widget("MorvaWidget").rect();
        bool bFits = m_oPanel.waitForVisible(strDialog) && oScreen.contains(find(strDialog).rect());
        for (const char* szButton : {"applyButton", "closeButton"}) {
            const QRect oButton = find(szButton).rect();
            bFits = bFits && oScreen.contains(oButton) && oButton.height() >= 40;
        }
        tap(find("closeButton").rect().center());
        return m_oPanel.waitForVisible(strDialog, false) && bFits;
    }

    bool opensInterface(const QPoint& oPoint, const QString& strInterface)
    {
        tap(oPoint);
        const bool bShown = m_oPanel.waitForVisible("NetworkSettingsDialog") &&
                            m_oPanel.widget("interfaceList_comboBox").text() == strInterface;
        return close("NetworkSettingsDialog") && bShown;
    }

private:
    sWidget list()
    {
        const QList<sWidget> oWidgets = m_oPanel.widgets();
        for (const sWidget& oWidget : oWidgets) {
            if (!oWidget["rows"].toObject().isEmpty()) {
                return oWidget;
            }
        }
        return {};
    }

    // Returns something that moves with whatever is scrolled.
    QRect moving()
    {
        const sWidget oList = list();
        const QJsonObject oRows = oList["rows"].toObject();
        const sWidget oFields = find("fields");
        return !oRows.isEmpty()    ? sWidget{oRows}.rect(oRows.keys().first())
               : oFields.isEmpty() ? find("scrollAreaWidgetContents").rect()
                                   : oFields.rect();
    }

    const Display& m_oDisplay;
    PanelProcess& m_oPanel;
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
        oDone += opensByAnyRow(oFinger);
        oFinger.tap(QString(s_szAddress));
        oDone += oPanel.waitForVisible("NetworkSettingsDialog") &&
                 oFinger.pick("interfaceList_comboBox", "eth10") &&
                 oPanel.waitForText("ipAddress_LineEdit", s_szLastAddress) == s_szLastAddress;
        oDone += oFinger.pick("useDHCP_comboBox", "Yes") && oFinger.pick("useDHCP_comboBox", "No");
        const int nCalls = m_oService.calls().filter("applyNewConfiguration").size();
        oFinger.tap(oFinger.find("applyButton").rect().center());
        const bool bTaken = QTest::qWaitFor(
            [&] { return m_oService.calls().filter("applyNewConfiguration").size() == nCalls + 1; }, 5000);
        const bool bClosed = oFinger.close("NetworkSettingsDialog");
        bool bDate = true;
        for (const char* szRow : {"systemDateForm_Label", "systemTime_Label"}) {
            oFinger.tap(QString(szRow));
            bDate = oFinger.close("DateTimeDialog") && bDate;
        }
        oDone += bDate;
        oDone += bTaken && bClosed;
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

    PrivateBus m_oBus;
    SimulatorProcess m_oService;
    QMap<QString, QVector<bool>> m_oTable;
};

QTEST_GUILESS_MAIN(TestTouch)
#include "tst_touch.moc"
