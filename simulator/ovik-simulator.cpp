#include "simulatedservice.h"
#include "steering.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFile>

#include <csignal>
#include <iostream>

namespace {

constexpr int s_nFailed = 1;
const QString s_strSteeringName = QStringLiteral("com.quen.OVIK.Simulator");
const QString s_strSteeringPath = QStringLiteral("/Simulator");

void addOptions(QCommandLineParser& oParser)
{
    oParser.setApplicationDescription(QStringLiteral(
        "Plays the device's platform service com.quen.OVIK. Steered as com.quen.OVIK.Simulator."));
    oParser.addHelpOption();
    oParser.addOptions({
        {QStringLiteral("system"), QStringLiteral("Publish on the system bus.")},
        {QStringLiteral("session"), QStringLiteral("Publish on the session bus (default).")},
        {QStringLiteral("address"), QStringLiteral("Publish on the bus at <address>."),
         QStringLiteral("address")},
        {QStringLiteral("config"), QStringLiteral("Start with the network configuration in <file>."),
         QStringLiteral("file")},
        {QStringLiteral("world"), QStringLiteral("Start in the world <name> or <name>=<argument>."),
         QStringLiteral("name"), QStringLiteral("well")},
        {QStringLiteral("lease-delay"), QStringLiteral("Give DHCP leases after <ms> milliseconds."),
         QStringLiteral("ms"), QStringLiteral("2000")},
    });
}

SimulatedService::fnConnect busOf(const QCommandLineParser& oParser)
{
    const QString strAddress = oParser.value(QStringLiteral("address"));
    if (!strAddress.isEmpty()) {
        return [=](const QString& strName) { return QDBusConnection::connectToBus(strAddress, strName); };
    }
    const auto eBus =
        oParser.isSet(QStringLiteral("system")) ? QDBusConnection::SystemBus : QDBusConnection::SessionBus;
    return [=](const QString& strName) { return QDBusConnection::connectToBus(eBus, strName); };
}

/** Reads the network configuration to start with; false when there is a file that cannot be read. */
bool readDocument(const QCommandLineParser& oParser, QString& strDocument)
{
    if (!oParser.isSet(QStringLiteral("config"))) {
        strDocument = NetworkDocument::ofThisMachine();
        return true;
    }
    QFile oFile(oParser.value(QStringLiteral("config")));
    if (!oFile.open(QIODevice::ReadOnly)) {
        return false;
    }
    strDocument = QString::fromUtf8(oFile.readAll());
    return true;
}

/** Publishes the steering object; quits the program when the bus goes away. */
bool publishSteering(QDBusConnection oBus, Steering& oSteering)
{
    oBus.connect(QString(), QStringLiteral("/org/freedesktop/DBus/Local"),
                 QStringLiteral("org.freedesktop.DBus.Local"), QStringLiteral("Disconnected"),
                 QCoreApplication::instance(), SLOT(quit()));
    return oBus.registerObject(s_strSteeringPath, &oSteering) && oBus.registerService(s_strSteeringName);
}

int fail(const std::string& strReason)
{
    std::cerr << "ovik-simulator: " << strReason << std::endl;
    return s_nFailed;
}

} // namespace

int main(int argc, char* argv[])
{
    // It goes on when nobody reads its lines any more.
    std::signal(SIGPIPE, SIG_IGN);
    QCoreApplication oApplication(argc, argv);
    QCommandLineParser oParser;
    addOptions(oParser);
    oParser.process(oApplication);
    if (!oParser.positionalArguments().isEmpty()) {
        return fail("arguments that are no options");
    }
    registerOVIKRecords();

    bool bNumber = false;
    const int nLeaseDelayMs = oParser.value(QStringLiteral("lease-delay")).toInt(&bNumber);
    if (!bNumber || nLeaseDelayMs < 0) {
        return fail("the lease delay is no number of milliseconds");
    }
    QString strDocument;
    if (!readDocument(oParser, strDocument)) {
        return fail("cannot read the file of the network configuration");
    }
    Device oDevice(strDocument, nLeaseDelayMs);
    if (!oDevice.clear()) {
        return fail("no network configuration in the file");
    }

    World oWorld;
    const QString strWorld = oParser.value(QStringLiteral("world"));
    if (!oWorld.set(strWorld.section(QLatin1Char('='), 0, 0), strWorld.section(QLatin1Char('='), 1))) {
        return fail("no such world, or an argument that it does not take");
    }

    const SimulatedService::fnConnect fnConnectToBus = busOf(oParser);
    const QDBusConnection oBus = fnConnectToBus(QStringLiteral("steering"));
    if (!oBus.isConnected()) {
        return fail("cannot reach the bus");
    }
    Steering oSteering(oDevice, oWorld);
    if (!publishSteering(oBus, oSteering)) {
        return fail("another simulator is on the bus, or the bus does not let it own its name");
    }
    SimulatedService oService(oDevice, oWorld, fnConnectToBus);
    if (!oService.publish()) {
        return fail("the bus does not let it publish the service");
    }

    std::cout << "ready" << std::endl;
    return QCoreApplication::exec();
}
