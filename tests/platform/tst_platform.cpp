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

// What the bus says of a name that nobody has.
const QString s_strAbsent =
    QStringLiteral(R"("The name com.quen.OVIK was not provided by any .service files")");

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
    void cleanup()
    {
        m_oSystemBus.stop();
        m_oSessionBus.stop();
        QVERIFY(m_oSimulator.endsWell());
    }

    void findsService_data()
    {
        QTest::addColumn<QString>("strBuses");
        QTest::addColumn<bool>("bFound");
        QTest::addColumn<QStringList>("oLog");
        QTest::addColumn<QStringList>("oCalls");

        const QStringList oNoSystem{"Failed connecting to DBUS system bus -> try OVIK on session bus"};
        const QStringList oNoSession{"Failed connecting to DBUS session bus -> trying loading OVIK plugin"};
        const QStringList oRetries{retry(s_strAbsent, 1), retry(s_strAbsent, 2), retry(s_strAbsent, 3),
                                   "Error reaching dbus service:  " + s_strAbsent +
                                       "  -> try falling back to OVIK session bus"};
        const QStringList oNoService{"No OVIK service running !? " + s_strAbsent};
        QStringList oInvalid{"SysteInfo", "MainOSInfo", "m_networkManager", "m_serviceManager"};
        oInvalid.replaceInStrings(QRegularExpression("(.+)"),
                                  R"(Cannot get /\1 object :  )"
                                  R"(QDBusError("org.freedesktop.DBus.Error.ServiceUnknown", )" +
                                      s_strAbsent + ")");
        const QString strWait = "Waiting for all OVIK services up and running...";
        const QStringList oSecondBus{strWait, strWait, strWait, R"(OVIK running in session bus!  "")"};
        const QStringList oProbe{"/ q_autostart()"};
        const QStringList oReboot{"/ restartSystem()"};

        // A bus with a star has the service.
        QTest::newRow("no bus") << "" << false << oNoSystem + oNoSession << QStringList();
        QTest::newRow("system bus without") << "system" << true << oRetries + oInvalid << QStringList();
        QTest::newRow("session bus without")
            << "session" << false << oNoSystem + oRetries + oNoService << QStringList();
        QTest::newRow("both without") << "system session" << false << oRetries + oNoService << QStringList();
        QTest::newRow("system bus") << "system* session" << true << QStringList() << oProbe + oReboot;
        QTest::newRow("session bus") << "session*" << true << oNoSystem << oProbe + oReboot;
        QTest::newRow("no root object")
            << "system*late" << true << QStringList() << QStringList(R"(/ServiceManager enabled("ntpd"))");
        // The root proxy is on the bus without the service: nothing can be rebooted.
        QTest::newRow("second bus") << "system session*" << true << oRetries + oSecondBus << oProbe;
    }

    void findsService()
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

    // Condition: the service hangs for 12.5 s, which are two calls of 5 s and half of the third.
    // Expectation: one failed pass, then the service is found.
    void waitsFiveSeconds()
    {
        PrivateBus oPatientBus(60000);
        QVERIFY(oPatientBus.start() && startSimulator(oPatientBus));
        PlatformClient oClient(oPatientBus, m_oSessionBus);
        ChildProcess oHang;
        const QString strHang = "kill -STOP %1; echo stopped; sleep 12.5; kill -CONT %1";
        QCOMPARE(oHang.startAndReadLine("sh", {"-c", strHang.arg(m_oSimulator.processId())}),
                 QString("stopped"));
        QCOMPARE(oClient.act("Init"), QString("true"));
        const QRegularExpression oLate("^[^|]*Did not receive a reply[^|]* -> retry # 1$");
        QVERIFY(oLate.match(oClient.takeLog().join('|')).hasMatch());
        oPatientBus.stop();
    }

    // The file tells how it is read.
    void acts_data()
    {
        QTest::addColumn<QStringList>("oLines");
        QFile oFile(QFINDTESTDATA("actions.txt"));
        QVERIFY(oFile.open(QIODevice::ReadOnly));
        const QStringList oTests = QString::fromUtf8(oFile.readAll()).split("\n[");
        for (const QString& strTest : oTests.mid(1)) {
            const QStringList oLines = strTest.split('\n', Qt::SkipEmptyParts);
            const QStringList oTitle = oLines[0].chopped(1).split(": ");
            for (const QString& strWorld : oTitle.value(1, "well").split("; ")) {
                QTest::addRow("%s: %s", qPrintable(oTitle[0]), qPrintable(strWorld))
                    << QStringList("World " + strWorld) + oLines.mid(1);
            }
        }
    }

    void acts()
    {
        QFETCH(QStringList, oLines);
        QVERIFY(m_oSystemBus.start() && startSimulator(m_oSystemBus));
        PlatformClient oClient(m_oSystemBus, m_oSessionBus);
        QCOMPARE(oClient.act("Init"), QString("true"));
        QVERIFY(SimulatorProcess::succeeds(m_oSimulator.steering().ClearCalls()));
        for (const QString& strLine : oLines.filter(QRegularExpression("^\\w"))) {
            const QString strAction = strLine.section(" =", 0, 0);
            if (strAction == strLine) {
                QVERIFY2(steer(strLine), qPrintable(strLine));
            } else {
                QCOMPARE(QString(strAction + " = " + oClient.act(strAction)).trimmed(), strLine);
            }
        }
        const QRegularExpression oReading("getInterfaceConfig|getConfigJSON|info|enabled");
        QStringList oCalls = callsOf(oClient).replaceInStrings(QRegularExpression("^"), "> ");
        if (oLines.filter(QRegularExpression("^>")).filter(oReading).isEmpty()) {
            oCalls = oCalls.filter(QRegularExpression("^(?!.*(" + oReading.pattern() + ")\\()"));
        }
        QCOMPARE(oCalls, oLines.filter(QRegularExpression("^>")));
        QCOMPARE(oClient.takeLog().replaceInStrings(QRegularExpression("^"), "! "),
                 oLines.filter(QRegularExpression("^!")));
        QVERIFY(oClient.endsWell());
    }

    // Condition: the bus goes away between the reading and the writing. Expectation: the writing fails.
    void losesBusBeforeSending()
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
    void followsService()
    {
        PlatformClient oClient(m_oSystemBus, m_oSessionBus);
        QCOMPARE(oClient.act("UpdateNetworkSettings"), QString("false"));
        QCOMPARE(oClient.act("SetNetworkSettings"), QString("false"));
        QCOMPARE(oClient.act("GetBestInterfaceIP"), QString());
        QCOMPARE(oClient.act("GetVersion"), QString("0"));
        QVERIFY(m_oSystemBus.start() && startSimulator(m_oSystemBus));
        oClient.takeLog();

        // The search and the call, as another program sees all that is sent to the service.
        ChildProcess oMonitor;
        oMonitor.start("dbus-monitor",
                       {"--profile", "--address", m_oSystemBus.address(), "destination=com.quen.OVIK"});
        // It loses its own name when it begins to listen.
        for (QString strLine; !strLine.contains("NameLost");) {
            QVERIFY(!(strLine = oMonitor.nextLine()).isNull());
        }
        QCOMPARE(oClient.act("GetBestInterfaceIP"), QString("192.168.2.20"));
        for (const char* szEnd : {"/\t<none>\tq_autostart", "/\torg.freedesktop.DBus.Peer\tPing",
                                  "/NetworkManager\tcom.quen.OVIK.NetworkManager\tgetConfigJSON"}) {
            QVERIFY2(oMonitor.nextLine().endsWith(szEnd), szEnd);
        }

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

    // Condition: the record held something else before. Expectation: nothing of that is left.
    void decodesRecords()
    {
        registerOVIKRecords();
        QVERIFY(m_oSystemBus.start() && startSimulator(m_oSystemBus));
        ComQuenOVIKSystemInfoInterface oProxy("com.quen.OVIK", "/SystemInfo",
                                              m_oSimulator.steering().connection());
        const QMap<QString, QByteArray> oRecords{{"well", "150b1a010203504c4330371020514e07"},
                                                 {"short-records 1", "150b1a01000050000000001020510007"},
                                                 {"short-records 6", "150b1a010203504c4330371020514e07"}};
        for (const QString& strWorld : oRecords.keys()) {
            QVERIFY(steer("World " + strWorld));
            QDBusPendingReply<systemInfo> oReply = oProxy.info();
            oReply.waitForFinished();
            systemInfo oInfo;
            std::memset(static_cast<void*>(&oInfo), 0xff, sizeof oInfo);
            oReply.reply().arguments().value(0).value<QDBusArgument>() >> oInfo;
            QCOMPARE(oReply.reply().signature(), QString("(yyyayayyyayy)"));
            // All fields are bytes, so the record has no gaps.
            QCOMPARE(QByteArray(reinterpret_cast<const char*>(&oInfo), sizeof oInfo),
                     QByteArray::fromHex(oRecords[strWorld]));
        }
    }

private:
    bool startSimulator(const PrivateBus& oBus, const QString& strWorld = "well")
    {
        return m_oSimulator.start(
            oBus, {"--lease-delay", "300", "--config", QFINDTESTDATA("network.json"), "--world", strWorld});
    }

    // Returns what the simulator received. The awaited call comes behind all that the client did not wait
    // for.
    QStringList callsOf(PlatformClient& oClient)
    {
        steer("World well");
        oClient.act("isNTPDEnabled");
        return m_oSimulator.calls().mid(0, m_oSimulator.calls().size() - 1);
    }

    bool steer(const QString& strLine)
    {
        const QString strArgument = strLine.section(' ', 1);
        ComQuenOVIKSimulatorInterface& oSteering = m_oSimulator.steering();
        return SimulatorProcess::succeeds(
            strLine.startsWith("Version ")
                ? oSteering.SetVersion(strArgument)
                : oSteering.SetWorld(strArgument.section(' ', 0, 0), strArgument.section(' ', 1)));
    }

    PrivateBus m_oSystemBus;
    PrivateBus m_oSessionBus;
    SimulatorProcess m_oSimulator;
};

QTEST_GUILESS_MAIN(PlatformTest)
#include "tst_platform.moc"
