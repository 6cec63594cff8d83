#include "finger.h"
#include "support/privatebus.h"
#include "support/simulatorprocess.h"

namespace {

// The system's order is eth1, eth0, eth3, ...
const char s_szAddress[] = "10.0.0.101";
const char s_szNextAddress[] = "10.0.0.100";
const char s_szLastAddress[] = "10.0.0.110";

} // namespace

/** What an operator does with one finger, on a real display of every size. */
class TestTouch : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        addInterfaces(0);
        QCOMPARE(QProcess::execute(DEVICE_TOOLS, {}), 0);
        QVERIFY(m_oBus.start() && m_oService.start(m_oBus));
        qputenv("DBUS_SYSTEM_BUS_ADDRESS", m_oBus.address().toUtf8());
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
            addInterfaces(i);
        }
        QTest::addColumn<QSize>("size");
        const int aSizes[][2]{{240, 320}, {320, 240}, {272, 480},  {480, 272},  {480, 320},
                              {481, 272}, {800, 480}, {600, 1024}, {1024, 600}, {1280, 800}};
        for (const auto& [nWidth, nHeight] : aSizes) {
            QTest::addRow("%dx%d", nWidth, nHeight) << QSize(nWidth, nHeight);
        }
    }

    void worksEverywhere()
    {
        QFETCH(QSize, size);
        const Display oDisplay(size);
        PanelProcess oPanel(oDisplay.name());
        Finger oFinger(oDisplay, oPanel);
        QVERIFY(oPanel.start());

        oPanel.send("n20\n");
        QTRY_VERIFY(oFinger.find("scrollAreaWidgetContents").rect().height() > 2500);
        QVERIFY(oFinger.flingToEnd(-1) && oFinger.flingToEnd(1));
        QVERIFY(oFinger.opensInterface(oFinger.reach(s_szAddress).center(), "eth1"));
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
    static void addInterfaces(int nFirst)
    {
        const QString strLink = "link add eth%1 type veth peer name eth%2";
        QCOMPARE(QProcess::execute("ip", strLink.arg(nFirst).arg(nFirst + 1).split(' ')), 0);
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
