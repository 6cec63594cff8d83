#include "OVIKProxy.h"
#include "platform/ovikplatform.h"
#include "support/simulatorprocess.h"

#include <QDir>
#include <QRegularExpression>
#include <QTest>

#include <cstring>

namespace {

const char s_szDocument[] =
    R"({"version":1,"hostname":"panel-01","interfaces":[)"
    R"({"name":"can0","hidden":true,"actual_ip_address":"10.0.0.1"},)"
    R"({"name":"eth0","label":"WAN","mac_address":"00:0a:1b:2c:3d:4e","ip_address":"192.168.1.20","netmask":"255.255.255.0",)"
    R"("gateway_ip":"192.168.1.1","metric":3,"configured":true,"readonly":false,"virtual":false,"hidden":false},)"
    R"({"name":"eth1","dhcp":true,"ip_address":"10.9.9.9","netmask":"255.0.0.0","gateway_ip":"10.9.9.1","hidden":false,)"
    R"("actual_ip_address":"192.168.2.20","actual_netmask":"255.255.254.0","actual_gateway_ip":"192.168.2.1"}]})";
const QString s_strReading = R"(/NetworkManager getInterfaceConfig("%1"))";

QString g_strLog;
PrivateBus* g_pLostBus = nullptr; // stops between the reading and the writing of settings

OVIKPlatform& platform()
{
    return *OVIKPlatform::getInstance();
}

QString cached()
{
    QByteArray oMac(6, '\0');
    platform().GetMacAddress(reinterpret_cast<unsigned char*>(oMac.data()));
    return platform().GetIpAddressAsString() + ' ' + oMac.toHex(':');
}

int openFiles()
{
    return QDir("/proc/self/fd").entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::System).size();
}

} // namespace

// The linker puts this in the place of Interface::toJSON().
using Interface = OVIK::NetworkConfiguration::Interface;
QString
realToJSON(const Interface* pInterface) __asm__("__real__ZNK4OVIK20NetworkConfiguration9Interface6toJSONEv");
QString
wrapToJSON(const Interface* pInterface) __asm__("__wrap__ZNK4OVIK20NetworkConfiguration9Interface6toJSONEv");

QString wrapToJSON(const Interface* pInterface)
{
    if (g_pLostBus) {
        g_pLostBus->stop();
        QTest::qWait(300);
    }
    return realToJSON(pInterface);
}

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
        g_pLostBus = nullptr;
        g_strLog.clear();
        // The next test gets a new client. The memory of this one is kept: the connection and the proxies in
        // it last as long as the process, and the leak checker must find them.
        static auto& s_oFormer = *new QList<OVIKPlatform*>;
        s_oFormer.append(&platform());
        platform().~OVIKPlatform();
    }

    void findsService_data()
    {
        QTest::addColumn<QString>("strBuses");
        QTest::addColumn<bool>("bFound");
        QTest::addColumn<QString>("strLog");
        QTest::addColumn<QString>("strCalls");
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
        const QString strWait = "Waiting for all OVIK services up and running...\n";
        const QString strSecond = strWait + strWait + strWait + "OVIK running in session bus!  \"\"\n";
        const QString strReboot = "/ q_autostart()|/ restartSystem()";
        // A bus with a star has the service.
        QTest::newRow("no bus") << "" << false << strNoSystem + strNoSession << "";
        QTest::newRow("no service") << "system" << true << strRetries + strInvalid << "";
        QTest::newRow("session bus") << "session" << false << strNoSystem + strRetries + strNoService << "";
        QTest::newRow("two buses") << "system session" << false << strRetries + strNoService << "";
        QTest::newRow("on the system bus") << "system* session" << true << "" << strReboot;
        QTest::newRow("on the session bus") << "session*" << true << strNoSystem << strReboot;
        QTest::newRow("no root object") << "system*late" << true << ""
                                        << "";
        // The root proxy is on the bus without the service: nothing can be rebooted.
        QTest::newRow("on the second bus")
            << "system session*" << true << strRetries + strSecond << "/ q_autostart()";
    }

    void findsService()
    {
        QFETCH(QString, strBuses);
        QFETCH(bool, bFound);
        QFETCH(QString, strLog);
        QVERIFY(!strBuses.contains("system") || m_oSystemBus.start());
        QVERIFY(!strBuses.contains("session") || m_oSessionBus.start());
        if (strBuses.contains('*')) {
            QVERIFY(m_oSimulator.start(strBuses.contains("system*") ? m_oSystemBus : m_oSessionBus));
            QVERIFY(setWorld(strBuses.contains("late") ? "root-late" : "well"));
        }
        // Nothing is sent before the search.
        platform().restartNTPDService(true);
        QVERIFY(!platform().isNTPDEnabled());
        QCOMPARE(platform().Init(), bFound);
        QCOMPARE(g_strLog, strLog);
        platform().Reboot(); // searches again if nothing was found
        QCOMPARE(g_strLog, bFound ? strLog : strLog + strLog);
        // Further searches leave nothing open.
        const int nOpenFiles = openFiles();
        for (int i = 0; i < 20 && !bFound; ++i) {
            platform().Init();
        }
        QTRY_VERIFY(openFiles() < nOpenFiles + 10);
        if (strBuses.contains('*')) {
            QTEST(calls().filter(QRegularExpression("^/ |stop")).join('|'), "strCalls");
        }
    }

    // The service hangs for 12.5 s: two calls of 5 s and half of the third.
    void waitsFiveSeconds()
    {
        QVERIFY(m_oSystemBus.start(60000) && m_oSimulator.start(m_oSystemBus));
        ChildProcess oHang;
        const QString strHang = "kill -STOP %1; echo stopped; sleep 12.5; kill -CONT %1";
        QCOMPARE(oHang.startAndReadLine("sh", {"-c", strHang.arg(m_oSimulator.processId())}),
                 QString("stopped"));
        QVERIFY(platform().Init());
        const QRegularExpression oLate("^.*Did not receive a reply.* -> retry # 1\n$");
        QVERIFY2(oLate.match(g_strLog).hasMatch(), qPrintable(g_strLog));
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
        QCOMPARE(m_oSimulator.calls().last(), s_strReading.arg("eth0"));
        QTRY_COMPARE(platform().GetBestInterfaceIP(), QHostAddress("192.168.2.20"));
        QCOMPARE(g_strLog, QString());
    }

    void losesBusBeforeWriting()
    {
        QVERIFY(startService());
        g_pLostBus = &m_oSystemBus;
        QVERIFY(!platform().SetNetworkSettings());
    }

    void readsSettings()
    {
        QVERIFY(startService() && platform().Init());
        QCOMPARE(platform().GetIpAddressAsString(), QString("0.0.0.0"));
        QVERIFY(platform().SetInterfaceName("eth1") && platform().UpdateNetworkSettings());
        QVERIFY(platform().GetDHCP());
        QCOMPARE(platform().GetNetmask(), 0xfffffe00U);
        QCOMPARE(platform().GetGateWay(), 0xc0a80201U);
        // What was read stays until the next reading, however late its reply comes.
        QVERIFY(platform().SetInterfaceName("") && setWorld("slow", "400"));
        QCOMPARE(platform().GetIpAddress(), 0xc0a80214U);
        QVERIFY(platform().UpdateNetworkSettings());
        QVERIFY(!platform().GetDHCP());
        QCOMPARE(cached(), QString("192.168.1.20 00:0a:1b:2c:3d:4e"));
        QCOMPARE(platform().GetNetmask(), 0xffffff00U);
        QCOMPARE(platform().GetGateWay(), 0xc0a80101U);
        QVERIFY(platform().SetInterfaceName("eth1") && platform().SetInterfaceName(nullptr));
        QVERIFY(platform().UpdateNetworkSettings());
        const QStringList oCalls = calls().filter("getInterface");
        QCOMPARE(oCalls,
                 QStringList({s_strReading.arg("eth1"), s_strReading.arg("eth0"), s_strReading.arg("eth0")}));
    }

    // A row names a world and its argument. The first two texts are an interface and a whole document at
    // once.
    void readsOddReplies_data()
    {
        QTest::addColumn<QString>("strCached");
        QTest::addColumn<QString>("strBest");
        const QString strKept = "10.1.2.3 00:0a:1b:2c:3d:4e";
        const QString strNone = "0.0.0.0 00:00:00:00:00:00";
        QTest::newRow(
            R"(malformed-json {"name":"eth0","mac_address":"zz:1:FF::b:c:77:88","ip_address":"300.1",)"
            R"("version":1,"interfaces":[{"name":"b","hidden":false,"actual_ip_address":"10.0.0.2"},)"
            R"({"name":"a","hidden":false,"actual_ip_address":"10.0.0.1"}]})")
            << "0.0.0.0 00:01:ff:00:0b:0c"
            << "10.0.0.1";
        QTest::newRow(
            R"(malformed-json {"name":"eth0","mac_address":"1:2","dhcp":true,"ip_address":"1.2.3.4",)"
            R"("version":1,"interfaces":[{"name":"a","actual_ip_address":"10.0.0.1"}]})")
            << "0.0.0.0 01:02:00:00:00:00"
            << "";
        QTest::newRow(R"(malformed-json {"name")") << strNone << "";
        QTest::newRow(R"(malformed-json {"dhcp":true,"interfaces":[]})") << strNone << "";
        for (const char* szWorld : {"wrong-types json", "wrong-types", "errors", "silent", "absent"}) {
            QTest::newRow(szWorld) << strKept << "";
        }
    }

    // Settings are written only to an interface that could be read.
    void readsOddReplies()
    {
        const QString strWorld = QTest::currentDataTag();
        QVERIFY(startService() && platform().UpdateNetworkSettings());
        QVERIFY(setWorld(strWorld.section(' ', 0, 0), strWorld.section(' ', 1)));
        QVERIFY(platform().SetIpAddress(0x0a010203) && platform().UpdateNetworkSettings());
        QTEST(cached(), "strCached");
        QTEST(platform().GetBestInterfaceIP().toString(), "strBest");
        const bool bNamed = strWorld.contains("eth0");
        QCOMPARE(platform().SetNetworkSettings(), bNamed);
        QVERIFY(setWorld("well"));
        QCOMPARE(calls().filter(QRegularExpression(" (set|apply)")).size(), bNamed ? 2 : 0);
    }

    // That the service refuses what is written goes unnoticed.
    void writesSettings()
    {
        const QString strText =
            "/NetworkManager getInterfaceConfig('eth0')|"
            "/NetworkManager setInterfaceConfigJSON('eth0','{'name' : 'eth0','label' : 'WAN',"
            "'mac_address' : '00:0a:1b:2c:3d:4e','ip_address' : '%1','netmask' : '%2',"
            "'gateway_ip' : '%3','metric' : 3,'dhcp' : %4,'configured' : true,"
            "'readonly' : false,'virtual' : false,'hidden' : false}')|"
            "/NetworkManager applyNewConfiguration()";
        const QString strStatic = strText.arg("10.1.2.3", "255.255.0.0", "10.1.0.1", "false");
        const QString strDHCP = strText.arg("192.168.1.20", "255.255.255.0", "192.168.1.1", "true");
        QVERIFY(startService() && platform().Init() && setWorld("errors", "setInterfaceConfigJSON"));
        for (bool bDHCP : {false, true}) {
            QVERIFY(SimulatorProcess::succeeds(m_oSimulator.steering().ClearCalls()));
            QVERIFY(platform().SetDHCP(true) && platform().SetIpAddress(0x0a010203) && !platform().GetDHCP());
            QVERIFY(platform().SetDHCP(true) && platform().SetNetmask(0xffff0000) && !platform().GetDHCP());
            QVERIFY(platform().SetDHCP(true) && platform().SetGateWay(0x0a010001) && !platform().GetDHCP());
            QVERIFY(platform().SetDHCP(bDHCP) && platform().SetNetworkSettings());
            QCOMPARE(calls().join('|').remove('\\').replace('"', '\''), bDHCP ? strDHCP : strStatic);
        }
    }

    void readsVersion_data()
    {
        QTest::addColumn<QString>("strLength");
        QTest::addColumn<quint32>("nVersion");
        QTest::newRow("-----------9.+2 7---") << "20" << 0x09020700U;
        QTest::newRow("------------10000---") << "20" << 0xff000000U;
        QTest::newRow("-----------010203---") << "13" << 0x01000000U;
    }

    // Asked for until it was read once.
    void readsVersion()
    {
        QFETCH(QString, strLength);
        QVERIFY(startService());
        QVERIFY(SimulatorProcess::succeeds(m_oSimulator.steering().SetVersion(QTest::currentDataTag())));
        QVERIFY(setWorld("errors") && platform().GetVersion() == 0);
        QVERIFY(setWorld("wrong-types") && platform().GetVersion() == 0);
        QVERIFY(setWorld("short-records", strLength));
        QTEST(platform().GetVersion(), "nVersion");
        QTEST(platform().GetVersion(), "nVersion");
        QCOMPARE(calls().filter("info()").size(), 3);
    }

    void switchesNTP()
    {
        QVERIFY(startService() && platform().Init() && !platform().isNTPDEnabled());
        platform().restartNTPDService(true);
        QVERIFY(platform().isNTPDEnabled());
        QVERIFY(setWorld("errors") && !platform().isNTPDEnabled());
        QVERIFY(setWorld("wrong-types") && !platform().isNTPDEnabled());
        QVERIFY(setWorld("well") && platform().isNTPDEnabled());
        platform().restartNTPDService(false);
        QStringList oCalls = calls().filter(QRegularExpression("Manager (?!enabled)"));
        QCOMPARE(oCalls.replaceInStrings(QRegularExpression(R"(^/ServiceManager (\w+)\("ntpd"\)$)"), "\\1"),
                 QStringList({"stop", "disable", "enable", "start", "stop", "disable"}));
        QVERIFY(!platform().isNTPDEnabled());
    }

    // What a record held before is gone; what is sent is what was received.
    void passesRecords()
    {
        registerOVIKRecords();
        QVERIFY(startService() && setWorld("short-records", "4"));
        QDBusConnection oBus = m_oSimulator.steering().connection();
        QDBusPendingReply<systemInfo> oReply =
            ComQuenOVIKSystemInfoInterface("com.quen.OVIK", "/SystemInfo", oBus).info();
        oReply.waitForFinished();
        QCOMPARE(hexadecimal(oReply.reply()), QByteArray("150b1a010203504c4330001020514e07"));
        QVERIFY(oBus.connect("", "/Test", "test.Records", "sent", this, SLOT(keep(QDBusMessage))));
        oBus.send(QDBusMessage::createSignal("/Test", "test.Records", "sent")
                  << QVariant::fromValue(oReply.value()));
        QTRY_COMPARE(m_oKept.signature(), QString("(yyyayayyyayy)"));
        QCOMPARE(hexadecimal(m_oKept), hexadecimal(oReply.reply()));
    }

    void keep(const QDBusMessage& oMessage) { m_oKept = oMessage; }

private:
    static QByteArray hexadecimal(const QDBusMessage& oMessage)
    {
        systemInfo oInfo; // bytes only, so without gaps
        std::memset(static_cast<void*>(&oInfo), 0xff, sizeof oInfo);
        oMessage.arguments().value(0).value<QDBusArgument>() >> oInfo;
        return QByteArray(reinterpret_cast<const char*>(&oInfo), sizeof oInfo).toHex();
    }

    bool startService()
    {
        return m_oSystemBus.start() && m_oSimulator.start(m_oSystemBus) &&
               m_oSimulator.setDocument(s_szDocument);
    }

    bool setWorld(const QString& strName, const QString& strArgument = "")
    {
        return SimulatorProcess::succeeds(m_oSimulator.steering().SetWorld(strName, strArgument));
    }

    // Returns what the simulator received. The awaited call comes behind all that the client did not wait
    // for.
    QStringList calls()
    {
        platform().isNTPDEnabled();
        return m_oSimulator.calls().mid(0, m_oSimulator.calls().size() - 1);
    }

    PrivateBus m_oSystemBus;
    PrivateBus m_oSessionBus;
    SimulatorProcess m_oSimulator;
    QDBusMessage m_oKept;
};

QTEST_GUILESS_MAIN(PlatformTest)
#include "tst_platform.moc"
