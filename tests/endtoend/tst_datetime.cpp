#include "support/panelprocess.h"
#include "support/privatebus.h"
#include "support/simulatorprocess.h"

#include <QFile>
#include <QTest>

namespace {

QByteArray contents(const QString& strPath)
{
    QFile oFile(strPath);
    return oFile.open(QIODevice::ReadOnly) ? oFile.readAll() : QByteArray();
}

} // namespace

/** The date and time dialog on the panel: what the calendar looks like, and what is typed and applied. */
class TestDateTime : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QCOMPARE(QProcess::execute("ip", {"link", "add", "eth0", "type", "veth", "peer", "name", "eth1"}), 0);
        QVERIFY(m_oBus.start() && m_oService.start(m_oBus));
        qputenv("DBUS_SYSTEM_BUS_ADDRESS", m_oBus.address().toUtf8());
    }

    void fitsScreenAndTakesKeys_data()
    {
        QTest::addColumn<QRect>("screen");
        QTest::addColumn<int>("cell"); // least size of a day in the calendar
        const std::tuple<int, int, int> aSizes[] = {
            {240, 320, 34}, {320, 240, 36}, {272, 480, 38},  {480, 272, 40},  {480, 320, 48},
            {481, 272, 40}, {800, 480, 48}, {600, 1024, 48}, {1024, 600, 48}, {1280, 800, 48}};
        for (const auto& [nWidth, nHeight, nCell] : aSizes) {
            QTest::addRow("%dx%d", nWidth, nHeight) << QRect(0, 0, nWidth, nHeight) << nCell;
        }
    }

    void fitsScreenAndTakesKeys()
    {
        QFETCH(QRect, screen);
        QFETCH(int, cell);
        QCOMPARE(QProcess::execute(DEVICE_TOOLS, {}), 0);
        const Display oDisplay(screen.size());
        PanelProcess oPanel(oDisplay.name());
        const auto fnRect = [&](const char* szName) { return oPanel.widget(szName).rect(); };
        QVERIFY(oPanel.start());
        QTRY_VERIFY(oDisplay.pointer("mousemove 100 200 click --repeat 20 5") && // once the panel is shown
                    screen.contains(fnRect("systemTimeForm_Label")));
        QVERIFY(oDisplay.tap(fnRect("systemTimeForm_Label").center()));
        QCOMPARE(oPanel.waitForText("ntpStatus_Label", "Last sync:64 secs ago"), "Last sync:64 secs ago");

        QVERIFY(oDisplay.tap(fnRect("qt_spinbox_lineedit").topLeft() + QPoint(9, 20))); // the day
        QVERIFY(oDisplay.pointer("type 17032031"));
        QTRY_COMPARE(oPanel.widget("currentDate_DateEdit").text().left(10), "17/03/2031");

        const QRect oDate = fnRect("currentDate_DateEdit");
        QVERIFY(oDisplay.tap({oDate.right() - 6, oDate.center().y()}));
        QVERIFY(oPanel.waitForVisible("calendarBar"));
        const QRect oDays = fnRect("qt_calendar_calendarview");
        QVERIFY(oDays.width() >= 7 * cell && oDays.height() > 6 * cell); // and the names of the days
        for (const char* szPart : {"qt_calendar_calendarview", "calendarBar", "previousMonth", "nextMonth",
                                   "previousYear", "nextYear"}) {
            QVERIFY2(screen.contains(fnRect(szPart)) && fnRect(szPart).width() >= 36 &&
                         fnRect(szPart).height() >= 36,
                     szPart);
        }
        QVERIFY(oDisplay.pointer("key Escape"));

        QVERIFY(oDisplay.tap(fnRect("timezone_ComboBox").center()));
        QVERIFY(oDisplay.pointer("type asia/tokyo"));
        QVERIFY(oPanel.waitForVisible("choices") && screen.contains(fnRect("choices")));
        QVERIFY(SimulatorProcess::succeeds(m_oService.steering().ClearCalls()));
        QVERIFY(oDisplay.tap(fnRect("applyButton").center()));
        QTRY_COMPARE(m_oService.calls().filter("/ServiceManager").join('\n'),
                     QString("/ServiceManager stop(\"ntpd\")\n/ServiceManager disable(\"ntpd\")"));
        QCOMPARE(contents("/etc/timezone"), "asia/tokyo\n"); // as typed
        QVERIFY(oPanel.waitForLog("saveDateTime failed"));   // the sandbox forbids it
        QCOMPARE(oPanel.quit(), 0);                          // with the dialog open
    }

private:
    PrivateBus m_oBus;
    SimulatorProcess m_oService;
};

QTEST_GUILESS_MAIN(TestDateTime)
#include "tst_datetime.moc"
