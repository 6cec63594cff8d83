#include "support/panelprocess.h"
#include "support/privatebus.h"
#include "support/simulatorprocess.h"

#include <QRegularExpression>
#include <QTest>
#include <fcntl.h>
#include <linux/if_tun.h>
#include <net/if.h>
#include <net/if_arp.h>
#include <sys/ioctl.h>

namespace {

const QString s_strDocument =
    R"({"version":1,"interfaces":[{"name":"eth0","label":"WAN","mac_address":"00:0a:1b:2c:3d:4e","metric":3,)"
    R"("ip_address":"192.168.1.20","netmask":"255.255.255.0","gateway_ip":"192.168.1.1","readonly":false},)"
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
    void initTestCase()
    {
        QCOMPARE(QProcess::execute("ip", {"link", "add", "eth0", "type", "veth", "peer", "name", "eth1"}), 0);
        QVERIFY(makeCANInterface());
        QVERIFY(m_oBus.start());
        qputenv("DBUS_SYSTEM_BUS_ADDRESS", m_oBus.address().toUtf8());
    }

    void followsTheService()
    {
        QVERIFY(m_oPanel.start());
        // A block for each interface but loopback and CAN, without addresses while there is no service.
        const QString strEmpty = "IP Address:|Subnet Mask:|Std. Gateway:|0.0.0.0|0.0.0.0|0.0.0.0";
        QCOMPARE(m_oPanel.namelessTexts().join('|'), strEmpty + "|" + strEmpty);

        QVERIFY(m_oService.start(m_oBus) && m_oService.setDocument(s_strDocument));
        QTRY_VERIFY_WITH_TIMEOUT(shows("192.168.1.20|255.255.255.0|192.168.1.1"), 20000);
        QTRY_VERIFY(shows("DHCP||")); // on, but without a lease yet

        // Each further refresh asks for each interface once.
        const int nCalls = m_oService.calls().size();
        QTRY_COMPARE_WITH_TIMEOUT(m_oService.calls().size(), nCalls + 2, 20000);
    }

    void changesSettings()
    {
        // Many taps open one dialog, for the interface that was tapped.
        QList<sWidget> oWidgets = m_oPanel.widgets();
        const auto itValue = std::find_if(oWidgets.cbegin(), oWidgets.cend(),
                                          [](const sWidget& o) { return o.text() == "192.168.1.20"; });
        const QPoint oValue = itValue->rect().center();
        QVERIFY(m_oDisplay.pointer(
            QString("mousemove %1 %2 click --repeat 10 --delay 5 1").arg(oValue.x()).arg(oValue.y())));
        QVERIFY(m_oPanel.waitForVisible("NetworkSettingsDialog"));
        QCOMPARE(m_oPanel.waitForText("macId_Label", "0:a:1b:2c:3d:4e"), "0:a:1b:2c:3d:4e");
        oWidgets = m_oPanel.widgets();
        const auto fnIsDialog = [](const sWidget& o) { return o.name() == "NetworkSettingsDialog"; };
        QCOMPARE(std::count_if(oWidgets.begin(), oWidgets.end(), fnIsDialog), 1);

        // Apply sends a static address, and the panel shows it at once.
        QVERIFY(m_oDisplay.tap(m_oPanel.widget("ipAddress_LineEdit").rect().center()));
        QVERIFY(m_oDisplay.pointer("key ctrl+a type 10.1.2.3"));
        QCOMPARE(m_oPanel.waitForText("ipAddress_LineEdit", "10.1.2.3"), "10.1.2.3");
        QVERIFY(m_oDisplay.tap(m_oPanel.widget("applyButton").rect().center()));
        QTRY_VERIFY(shows("10.1.2.3|255.255.255.0|192.168.1.1"));

        QVERIFY(m_oDisplay.tap(m_oPanel.widget("useDHCP_comboBox").rect().center()));
        QVERIFY(m_oDisplay.pointer("sleep 0.3 key Home Return"));
        QCOMPARE(m_oPanel.waitForText("useDHCP_comboBox", "Yes"), "Yes");
        QVERIFY(m_oDisplay.tap(m_oPanel.widget("applyButton").rect().center()));
        const QRegularExpression oDHCP(R"("dhcp"\s*:\s*true)"); // eth1 has it from the start
        QTRY_COMPARE(m_oService.steering().Document().value().count(oDHCP), 2);
        QCOMPARE(m_oPanel.quit(), 0); // with the dialog open
    }

private:
    bool shows(const QString& strAddresses)
    {
        return m_oPanel.namelessTexts().join('|').contains(strAddresses);
    }

    PrivateBus m_oBus;
    SimulatorProcess m_oService;
    const Display m_oDisplay{{800, 480}};
    PanelProcess m_oPanel{m_oDisplay.name()};
};

QTEST_GUILESS_MAIN(TestInterfaces)
#include "tst_interfaces.moc"
