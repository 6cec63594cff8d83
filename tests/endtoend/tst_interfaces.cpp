#include "support/panelprocess.h"
#include "support/privatebus.h"
#include "support/simulatorprocess.h"

#include <QTest>

namespace {

QString document(const QByteArray& oEth0)
{
    return "{\"version\" : 1, \"interfaces\" : [" + oEth0 +
           ", {\"name\" : \"eth1\", \"dhcp\" : true, \"ip_address\" : \"9.9.9.9\"}]}";
}

} // namespace

/** The network interfaces on the panel, from interfaces that the sandbox has to the simulated service. */
class TestInterfaces : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QCOMPARE(QProcess::execute("ip", {"link", "add", "eth0", "type", "veth", "peer", "name", "eth1"}), 0);
    }

    void followsTheService()
    {
        PrivateBus oBus;
        QVERIFY(oBus.start());
        qputenv("DBUS_SYSTEM_BUS_ADDRESS", oBus.address().toUtf8());
        const Display oDisplay({800, 600});
        PanelProcess oPanel(oDisplay.name());
        QVERIFY(oPanel.start());

        // Without the service there is a block for each interface but the loopback, without addresses.
        const QString strEmpty = "IP Address:|Subnet Mask:|Std. Gateway:|0.0.0.0|0.0.0.0|0.0.0.0";
        QCOMPARE(oPanel.namelessTexts().join('|'), strEmpty + "|" + strEmpty);

        // Once it is there the next refresh shows its values.
        SimulatorProcess oService;
        QVERIFY(oService.start(oBus));
        oService.setDocument(document("{\"name\" : \"eth0\", \"ip_address\" : \"192.168.1.20\", "
                                      "\"netmask\" : \"255.255.255.0\", \"gateway_ip\" : \"192.168.1.1\"}"));
        const auto fnHas = [&](const QStringList& oValues) {
            const QStringList oNow = oPanel.namelessTexts();
            return oNow.mid(3, 3) == oValues || oNow.mid(9, 3) == oValues;
        };
        QVERIFY(QTest::qWaitFor(
            [&] {
                return fnHas({"192.168.1.20", "255.255.255.0", "192.168.1.1"});
            },
            12000));
        QVERIFY2(fnHas({"DHCP", "", ""}),
                 qPrintable(oPanel.namelessTexts().join('|'))); // on, but without a lease yet

        // A tap on a value reads each interface again, once.
        oService.setDocument(document("{\"name\" : \"eth0\", \"ip_address\" : \"10.0.0.7\"}"));
        const int nCalls = oService.calls().size();
        const sWidget oDevice = oPanel.widget("deviceTypeForm_Label");
        const QPoint oValue = oDevice.rect().topLeft() + QPoint(30, 70);
        QVERIFY(oDisplay.tap(oValue));
        QVERIFY(QTest::qWaitFor([&] { return fnHas({"10.0.0.7", "0.0.0.0", "0.0.0.0"}); }, 2000));
        QCOMPARE(oService.calls().size(), nCalls + 2);

        // A drag that starts on it does not.
        QTest::qWait(600); // longer than a double click
        QString strDrag = QString("mousemove %1 %2 mousedown 1 sleep 0.4").arg(oValue.x()).arg(oValue.y());
        for (int i = 1; i < 10; ++i) {
            strDrag += QString(" mousemove %1 %2 sleep 0.02").arg(oValue.x()).arg(oValue.y() - 5 * i);
        }
        QVERIFY(oDisplay.pointer(strDrag + " sleep 0.3 mouseup 1 sleep 0.3"));
        QCOMPARE(oService.calls().size(), nCalls + 2);

        // Refreshes go on.
        QVERIFY(QTest::qWaitFor([&] { return oService.calls().size() == nCalls + 4; }, 12000));

        oService.kill(); // the panel goes on
        oPanel.send("v1.2\n");
        QCOMPARE(oPanel.waitForText("targetVersionForm_Label", "1.2"), QString("1.2"));
        QCOMPARE(oPanel.quit(), 0);
    }
};

QTEST_GUILESS_MAIN(TestInterfaces)
#include "tst_interfaces.moc"
