#include "support/panelprocess.h"
#include "support/privatebus.h"
#include "support/simulatorprocess.h"

#include <QElapsedTimer>
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
        const auto fnRows = [](const QString& strEth0, const QString& strEth1) {
            const QString strCaptions = "IP Address:|Subnet Mask:|Std. Gateway:|";
            return strCaptions + strEth1 + '|' + strCaptions + strEth0; // the system reports eth1 first
        };
        QCOMPARE(fnShown(), fnRows("||", "||"));

        // What cannot be read never gets the values of another interface, and keeps its own.
        const QString strEth0 = "192.168.1.20|255.255.255.0|192.168.1.1";
        const QString strEth1 = "DHCP||"; // on, but without a lease yet
        const std::tuple<const char*, const char*, QString> aRefreshes[] = {
            {"unknown-interface", "eth0", fnRows("||", strEth1)},
            {"well", "", fnRows(strEth0, strEth1)},
            {"unknown-interface", "eth0", fnRows(strEth0, strEth1)},
            {"errors", "", fnRows(strEth0, strEth1)}};
        SimulatorProcess oService;
        QVERIFY(oService.start(oBus) && oService.setDocument(s_strDocument));
        QElapsedTimer oWatched;
        oWatched.start();
        for (const auto& [szWorld, szArgument, strShown] : aRefreshes) {
            QVERIFY(SimulatorProcess::succeeds(oService.steering().SetWorld(szWorld, szArgument)));
            // Each refresh asks for each interface once.
            const auto nCalls = oService.calls().size();
            QTRY_COMPARE_WITH_TIMEOUT(oService.calls().size(), nCalls + 2, 20000);
            QTRY_COMPARE(fnShown(), strShown);
        }
        QVERIFY(oWatched.elapsed() > 28000); // 10 s lie between two of them
    }
};

QTEST_GUILESS_MAIN(TestInterfaces)
#include "tst_interfaces.moc"
