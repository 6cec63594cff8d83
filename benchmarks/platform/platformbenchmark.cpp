#include "panel/tarnixUIwidget.h"
#include "platform/ovikplatform.h"
#include "support/simulatorprocess.h"

#include <QApplication>
#include <QDBusMessage>
#include <QElapsedTimer>
#include <QNetworkInterface>
#include <QProcess>

#include <unistd.h>

#include <algorithm>
#include <functional>
#include <iostream>
#include <vector>

namespace {

constexpr int s_nRounds = 3000;
constexpr int s_nRefreshes = 200;
constexpr int s_nPrograms = 50;
const char* const s_szFirstInit = "--first-init";

const char* const s_szDocument =
    R"({ "version" : 1, "interfaces" : [ { "name" : "eth0", "label" : "WAN", "mac_address" : "00:11:22:33:44:55",
 "ip_address" : "192.168.1.20", "netmask" : "255.255.255.0", "gateway_ip" : "192.168.1.1", "dhcp" : true,
 "configured" : true, "readonly" : false, "virtual" : false, "hidden" : false, "actual_ip_address" : "192.168.1.20",
 "actual_netmask" : "255.255.255.0", "actual_gateway_ip" : "192.168.1.1" } ] })";

/** Returns the milliseconds that fnWork took. */
double milliseconds(const std::function<void()>& fnWork)
{
    QElapsedTimer oTimer;
    oTimer.start();
    fnWork();
    return static_cast<double>(oTimer.nsecsElapsed()) / 1e6;
}

double median(std::vector<double> oTimes)
{
    std::nth_element(oTimes.begin(), oTimes.begin() + static_cast<int>(oTimes.size() / 2), oTimes.end());
    return oTimes[oTimes.size() / 2];
}

/** Writes how long the first Init() of this program takes, without its log lines. */
int timeFirstInit()
{
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    std::cout << milliseconds([] { OVIKPlatform::getInstance()->Init(); }) << std::endl;
    return 0;
}

/** Measures the first Init() of new processes without any bus, which delays a start. Returns whether
 * it could be measured, as all these functions do. */
bool measureFailingInit()
{
    std::vector<double> oTimes;
    for (int i = 0; i < s_nPrograms; ++i) {
        QProcess oProgram;
        oProgram.start(QCoreApplication::applicationFilePath(), {QString::fromLatin1(s_szFirstInit)});
        oProgram.waitForFinished();
        bool bMeasured = false;
        oTimes.push_back(oProgram.readAllStandardOutput().trimmed().toDouble(&bMeasured));
        if (!bMeasured) {
            std::cerr << "a program ended without reporting its time" << std::endl;
            return false;
        }
    }
    const double dWorst = *std::max_element(oTimes.begin(), oTimes.end());
    std::cout << "first Init() without a bus: median " << median(oTimes) << " ms, longest " << dWorst << " ms"
              << std::endl;
    return true;
}

/** Returns the bare call that reading an interface makes. */
QDBusMessage bareCall(const QString& strInterface)
{
    auto oCall = QDBusMessage::createMethodCall(
        QStringLiteral("com.quen.OVIK"), QStringLiteral("/NetworkManager"),
        QStringLiteral("com.quen.OVIK.NetworkManager"), QStringLiteral("getInterfaceConfig"));
    oCall << strInterface;
    return oCall;
}

/** Measures a refresh of the panel beside one bare call for each interface of the sandbox, in turns. */
bool measureRefresh()
{
    int oPipe[2]; // the panel's commands: none, and no end
    if (pipe(oPipe) != 0 || dup2(oPipe[0], STDIN_FILENO) != STDIN_FILENO) {
        return false;
    }
    TarnixUI oPanel;
    QList<QDBusMessage> oCalls;
    const QList<QNetworkInterface> oInterfaces = QNetworkInterface::allInterfaces();
    for (const QNetworkInterface& oInterface : oInterfaces) {
        if (!oInterface.flags().testFlag(QNetworkInterface::IsLoopBack)) {
            oCalls.append(bareCall(oInterface.name()));
        }
    }
    const auto oBus = QDBusConnection::connectToBus(QDBusConnection::SystemBus, QStringLiteral("bare"));
    std::vector<double> oBare;
    std::vector<double> oRefresh;
    for (int i = 0; i < s_nRefreshes; ++i) {
        oBare.push_back(milliseconds([&] {
            for (const QDBusMessage& oCall : qAsConst(oCalls)) {
                oBus.call(oCall);
            }
        }));
        oRefresh.push_back(
            milliseconds([&] { QMetaObject::invokeMethod(&oPanel, "onNetworkTimerTimedOut"); }));
        QCoreApplication::processEvents();
    }
    const double dRatio = median(oRefresh) / median(oBare);
    std::cout << oCalls.size() << " bare calls " << median(oBare) << " ms, refresh of the panel "
              << median(oRefresh) << " ms, ratio " << dRatio << std::endl;
    return true;
}

/** Measures a reading of one interface beside one bare call, in turns, so that other load affects both. */
bool measureUpdate()
{
    OVIKPlatform::getInstance()->SetInterfaceName("eth0"); // the panel has selected another one
    const QDBusMessage oCall = bareCall(QStringLiteral("eth0"));
    const auto oBus = QDBusConnection::connectToBus(QDBusConnection::SystemBus, QStringLiteral("bare"));
    std::vector<double> oBare;
    std::vector<double> oUpdate;
    for (int i = 0; i < s_nRounds; ++i) {
        oBare.push_back(milliseconds([&] { oBus.call(oCall); }));
        oUpdate.push_back(milliseconds([] { OVIKPlatform::getInstance()->UpdateNetworkSettings(); }));
        // Reads what the simulator wrote meanwhile.
        QCoreApplication::processEvents();
    }
    const double dRatio = median(oUpdate) / median(oBare);
    std::cout << "bare call " << median(oBare) << " ms, UpdateNetworkSettings() " << median(oUpdate)
              << " ms, ratio " << dRatio << std::endl;
    return OVIKPlatform::getInstance()->GetIpAddressAsString() == "192.168.1.20";
}

} // namespace

/** Fails if something cannot be measured, however slow it is. Uses a bus of its own. */
int main(int argc, char* argv[])
{
    PrivateBus oBus;
    qputenv("DBUS_SYSTEM_BUS_ADDRESS", oBus.address().toUtf8());
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent");
    const QApplication oApplication(argc, argv);
    if (QCoreApplication::arguments().contains(QLatin1String(s_szFirstInit))) {
        return timeFirstInit();
    }

    SimulatorProcess oSimulator;
    const bool bMeasured = measureFailingInit() && oBus.start() && oSimulator.start(oBus) &&
                           measureRefresh() && oSimulator.setDocument(QString::fromLatin1(s_szDocument)) &&
                           measureUpdate();
    return bMeasured ? 0 : 1;
}
