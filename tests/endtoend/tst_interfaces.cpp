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
        const Display oDisplay({800, 600});
        PanelProcess oPanel(oDisplay.name());
        QVERIFY(oPanel.start());

        // A block for each interface but loopback and CAN, without addresses while there is no service.
        const QString strEmpty = "IP Address:|Subnet Mask:|Std. Gateway:|0.0.0.0|0.0.0.0|0.0.0.0";
        QCOMPARE(oPanel.namelessTexts().join('|'), strEmpty + "|" + strEmpty);

        SimulatorProcess oService;
        QVERIFY(oService.start(m_oBus));
        oService.setDocument(s_strDocument);
        QTRY_VERIFY_WITH_TIMEOUT(shows(oPanel, "192.168.1.20|255.255.255.0|192.168.1.1"), 12000);
        QTRY_VERIFY(shows(oPanel, "DHCP||")); // on, but without a lease yet

        // A drag that starts on a value moves the rows and is no tap.
        const QPoint oValue = valueOf(oPanel, "192.168.1.20");
        const int nTop = oPanel.widget("scrollAreaWidgetContents").rect().top();
        const int nCalls = oService.calls().size();
        QVERIFY(
            oDisplay.pointer(QString("mousemove %1 %2 mousedown 1 sleep 0.4 mousemove_relative -- 0 -20 "
                                     "sleep 0.1 mousemove_relative -- 0 -25 sleep 0.3 mouseup 1 sleep 0.3")
                                 .arg(oValue.x())
                                 .arg(oValue.y())));
        QVERIFY(oPanel.widget("scrollAreaWidgetContents").rect().top() < nTop);
        QVERIFY(oPanel.widget("NetworkSettingsDialog").isEmpty());
        QCOMPARE(oService.calls().size(), nCalls);

        // Each further refresh asks for each interface once.
        QVERIFY(QTest::qWaitFor([&] { return oService.calls().size() == nCalls + 2; }, 12000));
    }

    void changesSettings()
    {
        SimulatorProcess oService;
        QVERIFY(oService.start(m_oBus));
        QVERIFY(oService.setDocument(s_strDocument));
        const Display oDisplay({800, 480});
        PanelProcess oPanel(oDisplay.name());
        QVERIFY(oPanel.start());

        // Many taps open one dialog, for the interface that was tapped.
        const QPoint oValue = valueOf(oPanel, "192.168.1.20");
        QVERIFY(oDisplay.pointer(
            QString("mousemove %1 %2 click --repeat 10 --delay 5 1").arg(oValue.x()).arg(oValue.y())));
        QVERIFY(oPanel.waitForVisible("NetworkSettingsDialog"));
        const QList<sWidget> oWidgets = oPanel.widgets();
        const auto fnIsDialog = [](const sWidget& o) { return o.name() == "NetworkSettingsDialog"; };
        QCOMPARE(std::count_if(oWidgets.begin(), oWidgets.end(), fnIsDialog), 1);
        QCOMPARE(oPanel.widget("interfaceList_comboBox").text(), QString("eth0"));
        QCOMPARE(oPanel.widget("macId_Label").text(), QString("0:a:1b:2c:3d:4e"));

        // Apply sends a static address, and the panel shows it at once.
        QVERIFY(oDisplay.tap(oPanel.widget("ipAddress_LineEdit").rect().center()));
        QVERIFY(oDisplay.pointer("key ctrl+a type 10.1.2.3"));
        QCOMPARE(oPanel.waitForText("ipAddress_LineEdit", "10.1.2.3"), QString("10.1.2.3"));
        QVERIFY(oDisplay.tap(oPanel.widget("applyButton").rect().center()));
        QTRY_VERIFY(shows(oPanel, "10.1.2.3|255.255.255.0|192.168.1.1"));

        QVERIFY(oDisplay.tap(oPanel.widget("useDHCP_comboBox").rect().center()));
        QVERIFY(oDisplay.pointer("sleep 0.3 key Home Return"));
        QCOMPARE(oPanel.waitForText("useDHCP_comboBox", "Yes"), QString("Yes"));
        QVERIFY(oDisplay.tap(oPanel.widget("applyButton").rect().center()));
        const QRegularExpression oDHCP(R"("dhcp"\s*:\s*true)"); // eth1 has it from the start
        QTRY_COMPARE(oService.steering().Document().value().count(oDHCP), 2);
        QCOMPARE(oPanel.quit(), 0); // with the dialog open
    }

private:
    // Returns a point in the label that shows an address.
    static QPoint valueOf(PanelProcess& oPanel, const QString& strText)
    {
        const QList<sWidget> oWidgets = oPanel.widgets();
        for (const sWidget& oWidget : oWidgets) {
            if (oWidget.text() == strText) {
                return oWidget.rect().topLeft() + QPoint(30, oWidget.rect().height() / 2);
            }
        }
        return {};
    }

    static bool shows(PanelProcess& oPanel, const QString& strAddresses)
    {
        return oPanel.namelessTexts().join('|').contains(strAddresses);
    }

    PrivateBus m_oBus;
};

QTEST_GUILESS_MAIN(TestInterfaces)
#include "tst_interfaces.moc"
