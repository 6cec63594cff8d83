#include "OVIKProxy.h"
#include "SimulatorProxy.h"
#include "support/platformclient.h"
#include "support/simulatorprocess.h"

#include <QDBusConnectionInterface>
#include <QFile>
#include <QRegularExpression>
#include <QTest>

#include <cstring>

namespace {

// What the bus says of a name that nobody has, and what it says when a receiver does not reply in time.
const QString g_strAbsent =
    QStringLiteral(R"("The name com.quen.OVIK was not provided by any .service files")");
const QString g_strLate = QStringLiteral(
    R"("Did not receive a reply. Possible causes include: the remote application did not send a reply, the message bus )"
    R"(security policy blocked the reply, the reply timeout expired, or the network connection was broken.")");

QString retry(const QString& strError, int nPass)
{
    return QStringLiteral("Error reaching dbus service:  %1  -> retry # %2").arg(strError).arg(nPass);
}

// Counts the connections to the bus, this test's own left out.
int strangersOn(const PrivateBus& oBus)
{
    const QString strName = oBus.address();
    const QStringList oNames =
        QDBusConnection::connectToBus(strName, strName).interface()->registeredServiceNames();
    QDBusConnection::disconnectFromBus(strName);
    return oNames.filter(QRegularExpression("^:")).size() - 1;
}

} // namespace

// The platform client against the simulated service. Each client is a program of its own that must end well.
class PlatformTest : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();
    void findsService_data();
    void findsService();
    void sendsNothingElse();
    void waitsFiveSeconds();
    void acts_data();
    void acts();
    void losesBusBeforeSending();
    void followsService();
    void decodesRecords_data();
    void decodesRecords();

private:
    bool startSimulator(const PrivateBus& oBus, const QString& strWorld = "well");
    QStringList callsOf(PlatformClient& oClient);
    bool steer(const QString& strLine);

    PrivateBus m_oSystemBus;
    PrivateBus m_oSessionBus;
    SimulatorProcess m_oSimulator;
};

bool PlatformTest::startSimulator(const PrivateBus& oBus, const QString& strWorld)
{
    return m_oSimulator.start(
        oBus, {"--lease-delay", "300", "--config", QFINDTESTDATA("network.json"), "--world", strWorld});
}

void PlatformTest::cleanup()
{
    m_oSystemBus.stop();
    m_oSessionBus.stop();
    QVERIFY(m_oSimulator.endsWell());
}

// Returns what the simulator received. The awaited call comes behind all that the client did not wait for.
QStringList PlatformTest::callsOf(PlatformClient& oClient)
{
    steer("World well");
    oClient.act("isNTPDEnabled");
    return m_oSimulator.calls().mid(0, m_oSimulator.calls().size() - 1);
}

void PlatformTest::findsService_data()
{
    QTest::addColumn<QString>("strBuses");
    QTest::addColumn<bool>("bFound");
    QTest::addColumn<QStringList>("oLog");
    QTest::addColumn<QStringList>("oCalls");

    const QStringList oNoSystem = {"Failed connecting to DBUS system bus -> try OVIK on session bus"};
    const QStringList oNoSession = {"Failed connecting to DBUS session bus -> trying loading OVIK plugin"};
    const QStringList oRetries = {retry(g_strAbsent, 1), retry(g_strAbsent, 2), retry(g_strAbsent, 3),
                                  "Error reaching dbus service:  " + g_strAbsent +
                                      "  -> try falling back to OVIK session bus"};
    const QStringList oNoService = {"No OVIK service running !? " + g_strAbsent};
    const QString strLastError =
        R"( object :  QDBusError("org.freedesktop.DBus.Error.ServiceUnknown", )" + g_strAbsent + ")";
    const QStringList oInvalid = {
        "Cannot get /SysteInfo" + strLastError, "Cannot get /MainOSInfo" + strLastError,
        "Cannot get /m_networkManager" + strLastError, "Cannot get /m_serviceManager" + strLastError};
    const QString strWait = "Waiting for all OVIK services up and running...";
    const QStringList oSecondBus = {strWait, strWait, strWait, R"(OVIK running in session bus!  "")"};
    const QStringList oProbe = {"/ q_autostart()"};
    const QStringList oReboot = {"/ restartSystem()"};

    // A bus with a star has the service.
    QTest::newRow("no bus") << "" << false << oNoSystem + oNoSession << QStringList();
    QTest::newRow("system bus without service") << "system" << true << oRetries + oInvalid << QStringList();
    QTest::newRow("session bus without service")
        << "session" << false << oNoSystem + oRetries + oNoService << QStringList();
    QTest::newRow("both without service")
        << "system session" << false << oRetries + oNoService << QStringList();
    QTest::newRow("service on system bus") << "system* session" << true << QStringList() << oProbe + oReboot;
    QTest::newRow("service on session bus") << "session*" << true << oNoSystem << oProbe + oReboot;
    QTest::newRow("service without root object")
        << "system*late" << true << QStringList() << QStringList(R"(/ServiceManager enabled("ntpd"))");
    // The root proxy is on the bus without the service: nothing can be rebooted.
    QTest::newRow("service on second bus") << "system session*" << true << oRetries + oSecondBus << oProbe;
}

void PlatformTest::findsService()
{
    QFETCH(QString, strBuses);
    QFETCH(bool, bFound);
    PlatformClient oClient(m_oSystemBus, m_oSessionBus);
    QVERIFY(!strBuses.contains("system") || m_oSystemBus.start());
    QVERIFY(!strBuses.contains("session") || m_oSessionBus.start());
    QVERIFY(!strBuses.contains('*') ||
            startSimulator(strBuses.contains("system*") ? m_oSystemBus : m_oSessionBus,
                           strBuses.contains("late") ? "root-late" : "well"));
    // Condition: nothing may be sent before the service was looked for.
    QCOMPARE(oClient.act("restartNTPDService true"), QString());
    QCOMPARE(oClient.act("isNTPDEnabled"), QString("false"));
    QCOMPARE(oClient.act("Init"), QVariant(bFound).toString());
    QTEST(oClient.takeLog(), "oLog");
    // An operation looks for the service again if there is none, and not if there is one.
    oClient.act("Reboot");
    if (bFound) {
        QCOMPARE(oClient.takeLog(), QStringList());
    } else {
        QTEST(oClient.takeLog(), "oLog");
        // Each connection that was tried is closed again.
        QTRY_VERIFY(!strBuses.contains("system") || strangersOn(m_oSystemBus) == 0);
        QTRY_VERIFY(!strBuses.contains("session") || strangersOn(m_oSessionBus) == 0);
    }
    if (strBuses.contains("late")) {
        oClient.act("isNTPDEnabled"); // when it is answered the call before has met the missing object
    }
    if (strBuses.contains('*')) {
        QTEST(callsOf(oClient), "oCalls");
    }
    QVERIFY(oClient.endsWell());
}

// Everything that is sent to the service's name, in order, as another program on the bus sees it.
void PlatformTest::sendsNothingElse()
{
    QVERIFY(m_oSystemBus.start() && startSimulator(m_oSystemBus));
    ChildProcess oMonitor;
    oMonitor.start("dbus-monitor",
                   {"--profile", "--address", m_oSystemBus.address(), "destination=com.quen.OVIK"});
    // It loses its own name when it begins to listen.
    for (QString strLine; !strLine.contains("NameLost");) {
        QVERIFY(!(strLine = oMonitor.nextLine()).isNull());
    }
    PlatformClient oClient(m_oSystemBus, m_oSessionBus);
    oClient.act("Reboot");
    for (const char* pEnd : {"/\t<none>\tq_autostart", "/\torg.freedesktop.DBus.Peer\tPing",
                             "/\tcom.quen.OVIK\trestartSystem"}) {
        QVERIFY2(oMonitor.nextLine().endsWith(pEnd), pEnd);
    }
    QVERIFY(oClient.endsWell());
}

// Condition: the service hangs for 12.5 s, which are two calls of 5 s and half of the third.
// Expectation: one failed pass, then the service is found.
void PlatformTest::waitsFiveSeconds()
{
    PrivateBus oPatientBus(60000);
    QVERIFY(oPatientBus.start() && startSimulator(oPatientBus));
    PlatformClient oClient(oPatientBus, m_oSessionBus);
    ChildProcess oHang;
    const QString strHang = "kill -STOP %1; echo stopped; sleep 12.5; kill -CONT %1";
    QCOMPARE(oHang.startAndReadLine("sh", {"-c", strHang.arg(m_oSimulator.processId())}), QString("stopped"));
    QCOMPARE(oClient.act("Init"), QString("true"));
    QCOMPARE(oClient.takeLog(), QStringList(retry(g_strLate, 1)));
    QVERIFY(oClient.endsWell());
    oPatientBus.stop();
}

// The file tells how it is read.
void PlatformTest::acts_data()
{
    QTest::addColumn<QStringList>("oScript");
    QTest::addColumn<QStringList>("oCalls");
    QTest::addColumn<QStringList>("oLog");
    QFile oFile(QFINDTESTDATA("actions.txt"));
    QVERIFY(oFile.open(QIODevice::ReadOnly));
    const QStringList oTests = QString::fromUtf8(oFile.readAll()).split("\n[");
    for (const QString& strTest : oTests.mid(1)) {
        const QStringList oLines = strTest.split('\n', Qt::SkipEmptyParts);
        QTest::newRow(qPrintable(oLines[0].chopped(1)))
            << oLines.mid(1).filter(QRegularExpression("^\\w")) << oLines.filter(QRegularExpression("^>"))
            << oLines.filter(QRegularExpression("^!"));
    }
}

bool PlatformTest::steer(const QString& strLine)
{
    const QString strArgument = strLine.section(' ', 1);
    ComQuenOVIKSimulatorInterface& oSteering = m_oSimulator.steering();
    return SimulatorProcess::succeeds(
        strLine.startsWith("Version ")
            ? oSteering.SetVersion(strArgument)
            : oSteering.SetWorld(strArgument.section(' ', 0, 0), strArgument.section(' ', 1)));
}

void PlatformTest::acts()
{
    QFETCH(QStringList, oScript);
    QVERIFY(m_oSystemBus.start() && startSimulator(m_oSystemBus));
    PlatformClient oClient(m_oSystemBus, m_oSessionBus);
    QCOMPARE(oClient.act("Init"), QString("true"));
    QVERIFY(SimulatorProcess::succeeds(m_oSimulator.steering().ClearCalls()));
    for (const QString& strLine : oScript) {
        const QString strAction = strLine.section(" =", 0, 0);
        if (strAction == strLine) {
            QVERIFY2(steer(strLine), qPrintable(strLine));
        } else {
            QCOMPARE(QString(strAction + " = " + oClient.act(strAction)).trimmed(), strLine);
        }
    }
    QTEST(callsOf(oClient).replaceInStrings(QRegularExpression("^"), "> "), "oCalls");
    QTEST(oClient.takeLog().replaceInStrings(QRegularExpression("^"), "! "), "oLog");
    QVERIFY(oClient.endsWell());
}

// Condition: the bus goes away between the reading and the writing. Expectation: the writing fails at once.
void PlatformTest::losesBusBeforeSending()
{
    QVERIFY(m_oSystemBus.start() && startSimulator(m_oSystemBus));
    PlatformClient oClient(m_oSystemBus, m_oSessionBus);
    QVERIFY(m_oSimulator.setDocument(R"({"version":1,"interfaces":[{"name":"eth0","label":"hold"}]})"));
    QCOMPARE(oClient.act("SetNetworkSettings"), QString("held"));
    m_oSystemBus.stop();
    QCOMPARE(oClient.act("go on"), QString("false"));
    QVERIFY(oClient.endsWell());
}

// The service comes after the first look for it, dies, comes back, and dies in the middle of a call.
void PlatformTest::followsService()
{
    PlatformClient oClient(m_oSystemBus, m_oSessionBus);
    QCOMPARE(oClient.act("UpdateNetworkSettings"), QString("false"));
    QCOMPARE(oClient.act("SetNetworkSettings"), QString("false"));
    QCOMPARE(oClient.act("GetBestInterfaceIP"), QString());
    QCOMPARE(oClient.act("GetVersion"), QString("0"));
    QVERIFY(m_oSystemBus.start() && startSimulator(m_oSystemBus));
    oClient.takeLog();
    QCOMPARE(oClient.act("GetBestInterfaceIP"), QString("192.168.2.20"));
    m_oSimulator.kill();
    QCOMPARE(oClient.act("GetBestInterfaceIP"), QString());
    QVERIFY(startSimulator(m_oSystemBus));
    QCOMPARE(oClient.act("GetBestInterfaceIP"), QString("192.168.2.20"));
    QVERIFY(steer("World vanishes getInterfaceConfig:200"));
    QCOMPARE(oClient.act("SetNetworkSettings"), QString("false"));
    QVERIFY(m_oSimulator.calls().endsWith("/NetworkManager getInterfaceConfig(\"eth0\")"));
    QTRY_COMPARE(oClient.act("GetBestInterfaceIP"), QString("192.168.2.20"));
    QCOMPARE(oClient.takeLog(), QStringList());
    QVERIFY(oClient.endsWell());
}

void PlatformTest::decodesRecords_data()
{
    QTest::addColumn<QString>("strWorld");
    QTest::addColumn<QByteArray>("oFields");
    QTest::newRow("whole") << "well" << QByteArray::fromHex("150b1a 010203 504c433037 1020 514e 07");
    QTest::newRow("short") << "short-records 1"
                           << QByteArray::fromHex("150b1a 010000 5000000000 1020 5100 07");
    QTest::newRow("long") << "short-records 6"
                          << QByteArray::fromHex("150b1a 010203 504c433037 1020 514e 07");
}

void PlatformTest::decodesRecords()
{
    QFETCH(QString, strWorld);
    registerOVIKRecords();
    QVERIFY(m_oSystemBus.start() && startSimulator(m_oSystemBus));
    QVERIFY(steer("World " + strWorld));
    ComQuenOVIKSystemInfoInterface oProxy("com.quen.OVIK", "/SystemInfo",
                                          m_oSimulator.steering().connection());
    QDBusPendingReply<systemInfo> oReply = oProxy.info();
    oReply.waitForFinished();
    // Condition: the record held something else before. Expectation: nothing of that is left.
    systemInfo oInfo;
    std::memset(static_cast<void*>(&oInfo), 0xff, sizeof oInfo);
    oReply.reply().arguments().value(0).value<QDBusArgument>() >> oInfo;
    QCOMPARE(oReply.reply().signature(), QString("(yyyayayyyayy)"));
    // All fields are bytes, so the record has no gaps.
    const QByteArray oFields(reinterpret_cast<const char*>(&oInfo), sizeof oInfo);
    QTEST(oFields, "oFields");
}

QTEST_GUILESS_MAIN(PlatformTest)
#include "tst_platform.moc"
