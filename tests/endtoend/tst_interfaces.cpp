#include "support/panelprocess.h"
#include "support/privatebus.h"
#include "support/simulatorprocess.h"

#include <QTest>
#include <fcntl.h>
#include <linux/if_tun.h>
#include <net/if.h>
#include <net/if_arp.h>
#include <sys/ioctl.h>

namespace {

const QString s_strDocument =
    R"({"version":1,"interfaces":[{"name":"eth0","ip_address":"192.168.1.20","netmask":"255.255.255.0",)"
    R"("gateway_ip":"192.168.1.1"},)"
    R"({"name":"eth1","dhcp":true,"ip_address":"9.9.9.9"}]})";

// Not every kernel has a CAN driver, but a tunnel can pass for one. It lives until the test ends.
bool makeCANInterface()
{
    const int nTunnel = open("/dev/net/tun", O_RDWR);
    ifreq oRequest{};
    qstrncpy(oRequest.ifr_name, "can0", IFNAMSIZ);
    oRequest.ifr_flags = IFF_TUN;
    return ioctl(nTunnel, TUNSETIFF, &oRequest) == 0 && ioctl(nTunnel, TUNSETLINK, ARPHRD_CAN) == 0;
}

} // namespace

/** The network interfaces of the sandbox on the panel, with the simulated service. */
class TestInterfaces : public QObject
{
    Q_OBJECT

private slots:
    void followsTheService()
    {
        QCOMPARE(QProcess::execute("ip", {"link", "add", "eth0", "type", "veth", "peer", "name", "eth1"}), 0);
        PrivateBus oBus;
        QVERIFY(makeCANInterface() && oBus.start());
        qputenv("DBUS_SYSTEM_BUS_ADDRESS", oBus.address().toUtf8());
        PanelProcess oPanel;
        QVERIFY(oPanel.start());
        const auto fnShown = [&] { return oPanel.namelessTexts().join('|'); };

        // A block for each interface but loopback and CAN, without addresses while there is no service.
        const QString strEmpty = "IP Address:|Subnet Mask:|Std. Gateway:|0.0.0.0|0.0.0.0|0.0.0.0";
        QCOMPARE(fnShown(), strEmpty + "|" + strEmpty);

        SimulatorProcess oService;
        QVERIFY(oService.start(oBus) && oService.setDocument(s_strDocument));
        QTRY_VERIFY_WITH_TIMEOUT(fnShown().contains("192.168.1.20|255.255.255.0|192.168.1.1"), 20000);
        QTRY_VERIFY(fnShown().contains("DHCP||")); // on, but without a lease yet

        // Each further refresh asks for each interface once.
        const int nCalls = oService.calls().size();
        QTRY_COMPARE_WITH_TIMEOUT(oService.calls().size(), nCalls + 2, 20000);
    }
};

QTEST_GUILESS_MAIN(TestInterfaces)
#include "tst_interfaces.moc"
