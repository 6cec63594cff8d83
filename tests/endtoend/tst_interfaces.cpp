#include "support/panelprocess.h"
#include "support/privatebus.h"
#include "support/simulatorprocess.h"

#include <QTest>
#include <fcntl.h>
#include <linux/if_tun.h>
#include <net/if.h>
#include <sys/ioctl.h>

namespace {

constexpr unsigned long s_nCANLinkType = 280;

// What the service holds at first.
const QString s_strDocument =
    R"({"version":1,"interfaces":[{"name":"eth0","label":"WAN","mac_address":"00:0a:1b:2c:3d:4e","metric":3,)"
    R"("ip_address":"192.168.1.20","netmask":"255.255.255.0","gateway_ip":"192.168.1.1","readonly":false},)"
    R"({"name":"eth1","dhcp":true,"ip_address":"9.9.9.9"}]})";

// There is no driver for CAN everywhere, but a tunnel can pass for it. It lives until the test ends.
bool makeCANInterface()
{
    const int nTunnel = open("/dev/net/tun", O_RDWR);
    ifreq oRequest{};
    qstrncpy(oRequest.ifr_name, "can0", IFNAMSIZ);
    oRequest.ifr_flags = IFF_TUN;
    return ioctl(nTunnel, TUNSETIFF, &oRequest) == 0 && ioctl(nTunnel, TUNSETLINK, s_nCANLinkType) == 0;
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
        QVERIFY(makeCANInterface());
        QVERIFY(m_oBus.start());
        qputenv("DBUS_SYSTEM_BUS_ADDRESS", m_oBus.address().toUtf8());
    }

    void followsTheService()
    {
        const Display oDisplay({800, 600});
        PanelProcess oPanel(oDisplay.name());
        QVERIFY(oPanel.start());

        // Without the service there is a block for each interface but loopback and CAN, without addresses.
        const QString strEmpty = "IP Address:|Subnet Mask:|Std. Gateway:|0.0.0.0|0.0.0.0|0.0.0.0";
        QCOMPARE(oPanel.namelessTexts().join('|'), strEmpty + "|" + strEmpty);

        // Once it is there the next refresh shows its values.
        SimulatorProcess oService;
        QVERIFY(oService.start(m_oBus));
        oService.setDocument(s_strDocument);
        QVERIFY(shows(oPanel, {"192.168.1.20", "255.255.255.0", "192.168.1.1"}, 12000));
        QVERIFY(shows(oPanel, {"DHCP", "", ""})); // on, but without a lease yet

        // A drag that starts on a value is no tap.
        const QPoint oValue = valueOf(oPanel, "192.168.1.20");
        const int nCalls = oService.calls().size();
        QVERIFY(oDisplay.pointer(QString("mousemove %1 %2 mousedown 1 sleep 0.4 mousemove %1 %3 sleep 0.1 "
                                         "mousemove %1 %4 sleep 0.3 mouseup 1 sleep 0.3")
                                     .arg(oValue.x())
                                     .arg(oValue.y())
                                     .arg(oValue.y() - 20)
                                     .arg(oValue.y() - 45)));
        QVERIFY(oPanel.widget("NetworkSettingsDialog").isEmpty());
        QCOMPARE(oService.calls().size(), nCalls);

        // Refreshes go on, each asks for each interface once.
        QVERIFY(QTest::qWaitFor([&] { return oService.calls().size() == nCalls + 2; }, 12000));

        oService.kill(); // the panel goes on
        oPanel.send("v1.2\n");
        QCOMPARE(oPanel.waitForText("targetVersionForm_Label", "1.2"), QString("1.2"));
        QCOMPARE(oPanel.quit(), 0);
    }

    void changesSettings()
    {
        SimulatorProcess oService;
        QVERIFY(oService.start(m_oBus, {"--lease-delay", "500"}));
        QVERIFY(oService.setDocument(s_strDocument));
        const Display oDisplay({800, 480});
        PanelProcess oPanel(oDisplay.name());
        QVERIFY(oPanel.start());
        QCOMPARE(oService.calls().filter("getInterfaceConfig").size(), 4); // the list, then the first refresh

        // Many taps open one dialog, for the interface that was tapped.
        const QPoint oValue = valueOf(oPanel, "192.168.1.20");
        QVERIFY(oDisplay.pointer(
            QString("mousemove %1 %2 click --repeat 10 --delay 5 1").arg(oValue.x()).arg(oValue.y())));
        QVERIFY(oPanel.waitForVisible("NetworkSettingsDialog"));
        const QList<sWidget> oWidgets = oPanel.widgets();
        QCOMPARE(std::count_if(oWidgets.begin(), oWidgets.end(),
                               [](const sWidget& o) { return o.name() == "NetworkSettingsDialog"; }),
                 1);
        QCOMPARE(oPanel.widget("interfaceList_comboBox").text(), QString("eth0"));
        QCOMPARE(oPanel.widget("macId_Label").text(), QString("0:a:1b:2c:3d:4e"));

        // Apply sends a static address, and the panel shows it at once.
        type(oDisplay, oPanel, "ipAddress_LineEdit", "10.1.2.3");
        type(oDisplay, oPanel, "gateway_LineEdit", "nowhere");
        QVERIFY(oDisplay.tap(oPanel.widget("applyButton").rect().center()));
        QVERIFY(shows(oPanel, {"10.1.2.3", "255.255.255.0", "0.0.0.0"}));

        // A service that goes away, refuses or talks rubbish leaves the dialog with what was typed.
        for (const char* szWorld : {"absent", "errors", "malformed-json", "wrong-types"}) {
            type(oDisplay, oPanel, "ipAddress_LineEdit", "10.9.9.9");
            QVERIFY(SimulatorProcess::succeeds(oService.steering().SetWorld(szWorld, "")));
            QVERIFY(oDisplay.tap(oPanel.widget("applyButton").rect().center()));
            QTest::qWait(200);
            QCOMPARE(oPanel.widget("ipAddress_LineEdit").text(), QString("10.9.9.9"));
            QVERIFY(SimulatorProcess::succeeds(oService.steering().SetWorld("well", "")));
        }
        QVERIFY(!oService.steering().Document().value().contains("10.9.9.9"));

        // With DHCP the next refresh shows the lease.
        QVERIFY(oDisplay.pointer("mousemove 0 0"));
        QVERIFY(oDisplay.tap(oPanel.widget("useDHCP_comboBox").rect().center()));
        QVERIFY(oDisplay.pointer("sleep 0.3 key Home Return"));
        QCOMPARE(oPanel.waitForText("useDHCP_comboBox", "Yes"), QString("Yes"));
        QVERIFY(oDisplay.tap(oPanel.widget("applyButton").rect().center()));
        QVERIFY(shows(oPanel, {"192.168.200.100", "255.255.255.0", "192.168.200.1"}, 12000));

        // The runtime ends the panel while the dialog is open.
        QVERIFY(oPanel.widget("NetworkSettingsDialog")["visible"].toBool());
        QCOMPARE(oPanel.quit(), 0);
    }

    void dialogFitsScreen()
    {
        SimulatorProcess oService;
        QVERIFY(oService.start(m_oBus));
        for (const QSize oSize : {QSize(272, 480), QSize(480, 272), QSize(481, 320), QSize(800, 480)}) {
            const QRect oScreen(QPoint(), oSize);
            const Display oDisplay(oSize);
            PanelProcess oPanel(oDisplay.name());
            QVERIFY(oPanel.start());
            oPanel.send("n2\n");
            QVERIFY(oDisplay.pointer("mousemove 100 250 click 4")); // lets the rows be laid out
            QVERIFY(oDisplay.tap(valueOf(oPanel, "192.168.0.20")));
            QVERIFY(oPanel.waitForVisible("NetworkSettingsDialog"));
            const QRect oDialog = oPanel.widget("NetworkSettingsDialog").rect();
            QVERIFY(oScreen.contains(oDialog));
            QVERIFY((oDialog.center() - oScreen.center()).manhattanLength() <= 2);
            const QList<sWidget> oWidgets = oPanel.widgets();
            for (const sWidget& oWidget : oWidgets) {
                if (oWidget["parent"] != "frame" || !oWidget["visible"].toBool()) {
                    continue;
                }
                const QSize oNow = oWidget.rect().size();
                QVERIFY2(oDialog.contains(oWidget.rect()) &&
                             oNow.expandedTo(oWidget.rect("minimum").size()) == oNow,
                         qPrintable(oWidget.name()));
                QVERIFY(oSize.height() < 320 || oWidget["class"] == "QLabel" || oNow.height() >= 40);
            }
        }
    }

private:
    // Returns the middle of the label that shows an address.
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

    static bool shows(PanelProcess& oPanel, const QStringList& oValues, int nPatience = 5000)
    {
        const auto fnShows = [&] {
            const QStringList oNow = oPanel.namelessTexts();
            return oNow.mid(3, 3) == oValues || oNow.mid(9, 3) == oValues;
        };
        return QTest::qWaitFor(fnShows, nPatience);
    }

    static void type(const Display& oDisplay, PanelProcess& oPanel, const QString& strField,
                     const QString& strText)
    {
        QVERIFY(oDisplay.tap(oPanel.widget(strField).rect().center()));
        QVERIFY(oDisplay.pointer("key ctrl+a type " + strText));
        QCOMPARE(oPanel.waitForText(strField, strText), strText);
    }

    PrivateBus m_oBus;
};

QTEST_GUILESS_MAIN(TestInterfaces)
#include "tst_interfaces.moc"
