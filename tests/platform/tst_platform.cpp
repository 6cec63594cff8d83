#include "platform/ovikplatform.h"
#include "support/simulatorprocess.h"

#include <QDir>
#include <QRegularExpression>
#include <QTest>

namespace {

const char s_szDocument[] =
    R"({"version":1,"interfaces":[{"name":"can0","hidden":true,"actual_ip_address":"10.0.0.1"},)"
    R"({"name":"eth0","label":"WAN","mac_address":"00:0a:1b:2c:3d:4e","ip_address":"192.168.1.20",)"
    R"("netmask":"255.255.255.0","gateway_ip":"192.168.1.1","metric":3,"configured":true,"readonly":false,)"
    R"("virtual":false,"hidden":false},{"name":"eth1","dhcp":true,"ip_address":"10.9.9.9","hidden":false,)"
    R"("actual_ip_address":"192.168.2.20","actual_netmask":"255.255.254.0","actual_gateway_ip":"192.168.2.1"}]})";

QString g_strLog;

OVIKPlatform& platform()
{
    return *OVIKPlatform::getInstance();
}

// Returns the cached settings: address, netmask, gateway, MAC address and whether DHCP is on.
QString cached()
{
    QByteArray oMac(6, '\0');
    platform().GetMacAddress(reinterpret_cast<unsigned char*>(oMac.data()));
    const QString strMasked =
        QString(" %1 %2 ").arg(platform().GetNetmask(), 0, 16).arg(platform().GetGateWay(), 0, 16);
    return platform().GetIpAddressAsString() + strMasked + oMac.toHex(':') +
           (platform().GetDHCP() ? " DHCP" : "");
}

// Returns how many connections the client has opened and not closed, whether they work or not.
int openConnections()
{
    int nOpen = 0;
    for (int i = 1; i < 1000; ++i) {
        nOpen += QDBusConnection(QString("ovik-%1").arg(i)).name().isEmpty() ? 0 : 1;
    }
    return nOpen;
}

} // namespace

// The platform client against the simulated service in another process, on private buses.
class PlatformTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        qputenv("DBUS_SYSTEM_BUS_ADDRESS", m_oSystemBus.address().toUtf8());
        qputenv("DBUS_SESSION_BUS_ADDRESS", m_oSessionBus.address().toUtf8());
        qInstallMessageHandler(
            [](QtMsgType, const QMessageLogContext&, const QString& strLine) { g_strLog += strLine + '\n'; });
    }

    void cleanup()
    {
        m_oSystemBus.stop();
        m_oSessionBus.stop();
        QVERIFY(m_oSimulator.endsWell());
        g_strLog.clear();
        // The next test gets a new client. The memory of this one is kept: the connection and the proxies in
        // it last as long as the process, and the leak checker must find them.
        static auto& s_oFormer = *new QList<OVIKPlatform*>;
        s_oFormer.append(&platform());
        platform().~OVIKPlatform();
    }

    // A row names the buses that are there. One with a star has the service.
    void findsService_data()
    {
        QTest::addColumn<bool>("bFound");
        QTest::addColumn<QString>("strLogAndCalls");
        const QString strAbsent = R"("The name com.quen.OVIK was not provided by any .service files")";
        const QString strNoSystem = "Failed connecting to DBUS system bus -> try OVIK on session bus\n";
        const QString strNoSession = "Failed connecting to DBUS session bus -> trying loading OVIK plugin\n";
        const QString strNoService = "No OVIK service running !? " + strAbsent + '\n';
        QString strRetries;
        for (const char* szNext :
             {"retry # 1", "retry # 2", "retry # 3", "try falling back to OVIK session bus"}) {
            strRetries += "Error reaching dbus service:  " + strAbsent + "  -> " + szNext + '\n';
        }
        QString strInvalid;
        for (const char* szObject : {"SysteInfo", "MainOSInfo", "m_networkManager", "m_serviceManager"}) {
            strInvalid += QString("Cannot get /%1 object :  ").arg(szObject) +
                          R"(QDBusError("org.freedesktop.DBus.Error.ServiceUnknown", )" + strAbsent + ")\n";
        }
        const QString strSecond = QString("Waiting for all OVIK services up and running...\n").repeated(3) +
                                  "OVIK running in session bus!  \"\"\n";
        QTest::newRow("none") << false << strNoSystem + strNoSession;
        QTest::newRow("system") << true << strRetries + strInvalid;
        QTest::newRow("session") << false << strNoSystem + strRetries + strNoService;
        QTest::newRow("system session") << false << strRetries + strNoService;
        QTest::newRow("system* session") << true << "/ q_autostart()|/ restartSystem()";
        QTest::newRow("session*") << true << strNoSystem + "/ q_autostart()|/ restartSystem()";
        QTest::newRow("system* without root") << true << "";
        // The root proxy is on the bus without the service: nothing can be rebooted.
        QTest::newRow("system session*") << true << strRetries + strSecond + "/ q_autostart()";
    }

    void findsService()
    {
        QFETCH(bool, bFound);
        const QString strBuses = QTest::currentDataTag();
        QVERIFY(!strBuses.contains("system") || m_oSystemBus.start());
        QVERIFY(!strBuses.contains("session") || m_oSessionBus.start());
        if (strBuses.contains('*')) {
            QVERIFY(m_oSimulator.start(strBuses.contains("system*") ? m_oSystemBus : m_oSessionBus));
            QVERIFY(setWorld(strBuses.contains("root") ? "root-late" : "well"));
        }
        // Nothing is sent before the search.
        platform().restartNTPDService(true);
        QVERIFY(!platform().isNTPDEnabled());
        const int nConnections = openConnections();
        QCOMPARE(platform().Init(), bFound);
        const QString strLog = g_strLog;
        platform().Reboot(); // searches again if nothing was found
        QCOMPARE(g_strLog, bFound ? strLog : strLog + strLog);
        const bool bService = strBuses.contains('*');
        QTEST(strLog + (bService ? calls().filter(QRegularExpression("^/ |stop")).join('|') : ""),
              "strLogAndCalls");
        for (int i = 0; i < 50 && !bFound; ++i) {
            platform().Init();
        }
        // Further searches leave nothing open.
        QCOMPARE(openConnections(), nConnections + (bFound ? 1 : 0));
        QTRY_VERIFY(QDir("/proc/self/fd").entryList(QDir::AllEntries | QDir::System).size() < 60);
    }

    // The service hangs for 12.5 s: two calls of 5 s and half of the third.
    void waitsFiveSeconds()
    {
        QVERIFY(m_oSystemBus.start(60000) && m_oSimulator.start(m_oSystemBus));
        ChildProcess oHang;
        const QString strHang = "kill -STOP %1; echo stopped; sleep 12.5; kill -CONT %1";
        QCOMPARE(oHang.startAndReadLine("sh", {"-c", strHang.arg(m_oSimulator.processId())}), "stopped");
        QVERIFY(platform().Init());
        QVERIFY(g_strLog.contains(QRegularExpression("^.*Did not receive a reply.* -> retry # 1\n$")));
    }

    // The service comes after the first search, dies, comes back, and dies in the middle of a call.
    void followsService()
    {
        QVERIFY(!platform().UpdateNetworkSettings() && !platform().SetNetworkSettings());
        QVERIFY(platform().GetBestInterfaceIP().isNull() && platform().GetVersion() == 0);
        QVERIFY(startService());
        g_strLog.clear();

        // The search and the call, as another program sees all that is sent to the service.
        ChildProcess oMonitor;
        oMonitor.start("dbus-monitor",
                       {"--profile", "--address", m_oSystemBus.address(), "destination=com.quen.OVIK"});
        // It loses its own name when it begins to listen.
        for (QString strLine; !strLine.contains("NameLost");) {
            QVERIFY(!(strLine = oMonitor.nextLine()).isNull());
        }
        QCOMPARE(platform().GetBestInterfaceIP(), QHostAddress("192.168.2.20"));
        for (const char* szEnd : {"/\t<none>\tq_autostart", "/\torg.freedesktop.DBus.Peer\tPing",
                                  "/NetworkManager\tcom.quen.OVIK.NetworkManager\tgetConfigJSON"}) {
            QVERIFY2(oMonitor.nextLine().endsWith(szEnd), szEnd);
        }

        m_oSimulator.kill();
        QVERIFY(platform().GetBestInterfaceIP().isNull());
        QVERIFY(m_oSimulator.start(m_oSystemBus) && m_oSimulator.setDocument(s_szDocument));
        QCOMPARE(platform().GetBestInterfaceIP(), QHostAddress("192.168.2.20"));
        QVERIFY(setWorld("vanishes", "getInterfaceConfig:200"));
        QVERIFY(!platform().SetNetworkSettings());
        QCOMPARE(m_oSimulator.calls().last(), R"(/NetworkManager getInterfaceConfig("eth0"))");
        QTRY_COMPARE(platform().GetBestInterfaceIP(), QHostAddress("192.168.2.20"));
        QCOMPARE(g_strLog, QString());
    }

    // What was read stays until the next reading, however late its reply comes.
    void readsSettings()
    {
        QVERIFY(startService());
        QCOMPARE(platform().GetIpAddressAsString(), QString("0.0.0.0"));
        for (const char* szName : std::initializer_list<const char*>{"eth1", "", nullptr}) {
            QVERIFY(platform().SetInterfaceName("eth0") && platform().UpdateNetworkSettings());
            QVERIFY(platform().SetInterfaceName("eth1") && platform().UpdateNetworkSettings());
            QCOMPARE(cached(), "192.168.2.20 fffffe00 c0a80201 00:0a:1b:2c:3d:4e DHCP");
            QVERIFY(platform().SetInterfaceName(szName) && setWorld("slow", "400"));
            QCOMPARE(platform().GetIpAddress(), 0xc0a80214U);
            QVERIFY(platform().UpdateNetworkSettings() && setWorld("well"));
            QCOMPARE(platform().GetDHCP(), szName && *szName);
        }
        QCOMPARE(cached(), "192.168.1.20 ffffff00 c0a80101 00:0a:1b:2c:3d:4e");
    }

    // A row names a world and its argument: texts that are an interface and a whole document at once.
    void readsOddReplies_data()
    {
        QTest::addColumn<QString>("strCachedAndBest");
        QTest::newRow(
            R"(malformed-json {"name":"eth0","mac_address":"zz:1:FF::b:c:77:88","ip_address":"300.1",)"
            R"("version":1,"interfaces":[{"name":"b","hidden":false,"actual_ip_address":"10.0.0.2"},)"
            R"({"name":"a","hidden":false,"actual_ip_address":"10.0.0.1"}]})")
            << "0.0.0.0 0 0 00:01:ff:00:0b:0c 10.0.0.1";
        QTest::newRow(
            R"(malformed-json {"name":"eth0","mac_address":"1:2","dhcp":true,"ip_address":"1.2.3.4",)"
            R"("version":1,"interfaces":[{"name":"a","actual_ip_address":"10.0.0.1"}]})")
            << "0.0.0.0 0 0 01:02:1b:2c:3d:4e DHCP ";
        for (const char* szWorld : {R"(malformed-json {"name")", R"(malformed-json {"interfaces":[]})",
                                    "wrong-types json", "wrong-types", "errors", "silent", "absent"}) {
            QTest::newRow(szWorld) << (*szWorld == 'm' ? "0.0.0.0 0 0 00:0a:1b:2c:3d:4e "
                                                       : "10.1.2.3 ffffff00 c0a80101 00:0a:1b:2c:3d:4e ");
        }
    }

    // Settings are written only to an interface that could be read.
    void readsOddReplies()
    {
        const QString strWorld = QTest::currentDataTag();
        QVERIFY(startService() && platform().UpdateNetworkSettings());
        platform().restartNTPDService(true);
        QVERIFY(setWorld(strWorld.section(' ', 0, 0), strWorld.section(' ', 1)));
        QVERIFY(platform().SetIpAddress(0x0a010203) && platform().UpdateNetworkSettings());
        QTEST(cached() + ' ' + platform().GetBestInterfaceIP().toString(), "strCachedAndBest");
        QCOMPARE(platform().isNTPDEnabled(), strWorld.contains("json"));
        const bool bNamed = strWorld.contains("eth0");
        QCOMPARE(platform().SetNetworkSettings(), bNamed);
        QVERIFY(setWorld("well"));
        QCOMPARE(calls().filter(QRegularExpression(" (set|apply)")).size(), bNamed ? 2 : 0);
    }

    // The result is true even if the service refuses what is written.
    void writesSettings()
    {
        const QString strText =
            "/NetworkManager getInterfaceConfig('eth0')|"
            "/NetworkManager setInterfaceConfigJSON('eth0','{'name' : 'eth0','label' : 'WAN',"
            "'mac_address' : '00:0a:1b:2c:3d:4e','ip_address' : '%1','netmask' : '%2',"
            "'gateway_ip' : '%3','metric' : 3,'dhcp' : %4,'configured' : true,"
            "'readonly' : false,'virtual' : false,'hidden' : false}')|"
            "/NetworkManager applyNewConfiguration()";
        QVERIFY(startService() && platform().Init() && setWorld("errors", "setInterfaceConfigJSON"));
        QVERIFY(SimulatorProcess::succeeds(m_oSimulator.steering().ClearCalls()));
        QVERIFY(platform().SetDHCP(true) && platform().SetIpAddress(0x0a010203) && !platform().GetDHCP());
        QVERIFY(platform().SetDHCP(true) && platform().SetNetmask(0xffff0000) && !platform().GetDHCP());
        QVERIFY(platform().SetDHCP(true) && platform().SetGateWay(0x0a010001) && !platform().GetDHCP());
        QVERIFY(platform().SetNetworkSettings() && platform().SetDHCP(true) &&
                platform().SetNetworkSettings());
        QCOMPARE(calls().join('|').remove('\\').replace('"', '\''),
                 strText.arg("10.1.2.3", "255.255.0.0", "10.1.0.1", "false") + '|' +
                     strText.arg("192.168.1.20", "255.255.255.0", "192.168.1.1", "true"));
    }

    // It is read from the service until that has succeeded once.
    void readsVersion()
    {
        const std::tuple<const char*, const char*, quint32> aRows[] = {
            {"-----------9.+2 7---", "20", 0x09020700},
            {"------------10000---", "30", 0xff000000},
            {"-----------010203---", "13", 0x01000000}};
        for (const auto& [szText, szLength, nVersion] : aRows) {
            QVERIFY(startService());
            QVERIFY(SimulatorProcess::succeeds(m_oSimulator.steering().SetVersion(szText)));
            QVERIFY(setWorld("errors") && platform().GetVersion() == 0);
            QVERIFY(setWorld("short-records", szLength));
            QVERIFY(platform().GetVersion() == nVersion && platform().GetVersion() == nVersion);
            QCOMPARE(calls().filter("info()").size(), 2);
            cleanup();
        }
    }

private:
    bool startService()
    {
        return m_oSystemBus.start() && m_oSimulator.start(m_oSystemBus) &&
               m_oSimulator.setDocument(s_szDocument);
    }

    bool setWorld(const QString& strName, const QString& strArgument = "")
    {
        return SimulatorProcess::succeeds(m_oSimulator.steering().SetWorld(strName, strArgument));
    }

    // Returns what the simulator received. The awaited call comes after all others.
    QStringList calls()
    {
        platform().isNTPDEnabled();
        return m_oSimulator.calls().mid(0, m_oSimulator.calls().size() - 1);
    }

    PrivateBus m_oSystemBus;
    PrivateBus m_oSessionBus;
    SimulatorProcess m_oSimulator;
};

QTEST_GUILESS_MAIN(PlatformTest)
#include "tst_platform.moc"
