#include "simulatedservice.h"
#include "steering.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include <csignal>
#include <iostream>

namespace {

constexpr int s_nFailed = 1;

void addOptions(QCommandLineParser& oParser)
{
    oParser.setApplicationDescription(
        "Simulates the device's platform service com.quen.OVIK. Steered as com.quen.OVIK.Simulator.");
    oParser.addHelpOption();
    oParser.addOptions({
        {"system", "Publish on the system bus; the default is the session bus."},
        {"address", "Publish on the bus at <address>.", "address"},
        {"lease-delay", "Give DHCP leases after <ms> milliseconds.", "ms", "2000"},
    });
}

SimulatedService::fnConnect busOf(const QCommandLineParser& oParser)
{
    const QString strAddress = oParser.value("address");
    if (!strAddress.isEmpty()) {
        return [=](const QString& strName) { return QDBusConnection::connectToBus(strAddress, strName); };
    }
    const auto eBus = oParser.isSet("system") ? QDBusConnection::SystemBus : QDBusConnection::SessionBus;
    return [=](const QString& strName) { return QDBusConnection::connectToBus(eBus, strName); };
}

/** Publishes the steering object; quits the program when the bus goes away. */
bool publishSteering(QDBusConnection oBus, Steering& oSteering)
{
    oBus.connect(QString(), "/org/freedesktop/DBus/Local", "org.freedesktop.DBus.Local", "Disconnected",
                 QCoreApplication::instance(), SLOT(quit()));
    return oBus.registerObject("/Simulator", &oSteering, QDBusConnection::ExportAllSlots) &&
           oBus.registerService("com.quen.OVIK.Simulator");
}

int fail(const char* szReason)
{
    std::cerr << "ovik-simulator: " << szReason << std::endl;
    return s_nFailed;
}

} // namespace

int main(int argc, char* argv[])
{
    // Continue when the output is no longer read.
    std::signal(SIGPIPE, SIG_IGN);
    QCoreApplication oApplication(argc, argv);
    QCommandLineParser oParser;
    addOptions(oParser);
    oParser.process(oApplication);
    bool bNumber = false;
    const int nLeaseDelayMs = oParser.value("lease-delay").toInt(&bNumber);
    if (!bNumber || nLeaseDelayMs < 0) {
        return fail("the lease delay is not a number of milliseconds");
    }

    World oWorld;
    PlatformObjects oObjects(oWorld, nLeaseDelayMs);
    Steering oSteering(oObjects, oWorld);
    const SimulatedService::fnConnect fnConnectToBus = busOf(oParser);
    const QDBusConnection oBus = fnConnectToBus("steering");
    if (!oBus.isConnected()) {
        return fail("cannot reach the bus");
    }
    if (!publishSteering(oBus, oSteering)) {
        return fail("another simulator is on the bus, or the bus does not let it own its name");
    }
    SimulatedService oService(oObjects, oWorld, fnConnectToBus);
    if (!oService.publish()) {
        return fail("the bus does not let it publish the service");
    }
    std::cout << "ready" << std::endl;
    return QCoreApplication::exec();
}
