#include "finger.h"
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
        const bool bTaken = QTest::qWaitFor(fnTaken, Finger::s_nPatience);
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
