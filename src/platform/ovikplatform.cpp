#include "platform/ovikplatform.h"

#include "OVIKProxy.h"

#include <QDBusMessage>
#include <QDBusPendingReply>
#include <QDebug>

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <utility>

namespace {

using Interface = OVIK::NetworkConfiguration::Interface;

constexpr char s_szService[] = "com.quen.OVIK";
constexpr char s_szRootPath[] = "/";
constexpr char s_szDefaultInterface[] = "eth0";
constexpr char s_szNTPService[] = "ntpd";
constexpr int s_nProbeTimeoutMs = 5000;
constexpr int s_nProbes = 3;
constexpr int s_nRootAttempts = 3;

/** Waits until Qt's thread has noted the name that the bus has given to a new connection. */
void settleConnection(const QDBusConnection& oConnection)
{
    // Each call to a service looks at the list of such names, which that thread changes without a lock: a
    // call that is too early can crash. Calls to the bus do not look; by its second reply the name is there.
    const auto oCall =
        QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/"),
                                       QStringLiteral("org.freedesktop.DBus"), QStringLiteral("GetId"));
    oConnection.call(oCall, QDBus::Block, s_nProbeTimeoutMs);
    oConnection.call(oCall, QDBus::Block, s_nProbeTimeoutMs);
}

QDBusConnection* openConnection(QDBusConnection::BusType eBus)
{
    // Qt keeps a failed standard connection until the process ends; one under a name of its own can be closed
    // again.
    static int nOpened = 0;
    const auto oConnection = QDBusConnection::connectToBus(eBus, QStringLiteral("ovik-%1").arg(++nOpened));
    settleConnection(oConnection);
    return new QDBusConnection(oConnection);
}

void closeConnection(QDBusConnection* pConnection)
{
    const QString strName = pConnection->name();
    delete pConnection;
    QDBusConnection::disconnectFromBus(strName);
}

QDBusMessage callRoot(const QDBusConnection& oConnection, const QString& strInterface,
                      const QString& strMember)
{
    const auto oCall = QDBusMessage::createMethodCall(s_szService, s_szRootPath, strInterface, strMember);
    return oConnection.call(oCall, QDBus::Block, s_nProbeTimeoutMs);
}

/** Returns the reply to the ping. */
QDBusMessage probeService(const QDBusConnection& oConnection)
{
    // Its reply does not matter: the call makes the bus start a service that it can activate.
    callRoot(oConnection, QString(), QStringLiteral("q_autostart"));
    return callRoot(oConnection, QStringLiteral("org.freedesktop.DBus.Peer"), QStringLiteral("Ping"));
}

bool isReply(const QDBusMessage& oMessage)
{
    return oMessage.type() == QDBusMessage::ReplyMessage;
}

template<typename Proxy>
Proxy* createObjectProxy(const QString& strPath, const QDBusConnection& oConnection,
                         const char* szInvalidText)
{
    auto* pProxy = new Proxy(s_szService, strPath, oConnection, nullptr);
    if (!pProxy->isValid()) {
        qWarning() << szInvalidText << oConnection.lastError();
    }
    return pProxy;
}

quint32 toIPv4(const QString& strAddress)
{
    return QHostAddress(strAddress).toIPv4Address();
}

/** Reads strJSON into oInterface; false when it does not describe an interface. */
bool describesInterface(const QString& strJSON, Interface& oInterface)
{
    try {
        return oInterface.fromJSON(strJSON) && !oInterface.name.isEmpty();
    } catch (const json::Exception&) {
        return false;
    }
}

/** Reads two characters of the version text, which has no NUL at its end, as a decimal number. */
quint32 versionNumber(const _bootldrInfo& oInfo, int nPosition)
{
    const char aDigits[] = {static_cast<char>(oInfo.version[nPosition]),
                            static_cast<char>(oInfo.version[nPosition + 1]), '\0'};
    return static_cast<quint32>(std::strtol(aDigits, nullptr, 10));
}

} // namespace

bool OVIKPlatform::m_bInstanceFlag = false;
OVIKPlatform* OVIKPlatform::m_pInstance = nullptr;

OVIKPlatform* OVIKPlatform::getInstance()
{
    if (m_bInstanceFlag) {
        return m_pInstance;
    }
    m_pInstance = new OVIKPlatform;
    m_bInstanceFlag = true;
    return m_pInstance;
}

OVIKPlatform::OVIKPlatform()
{
    registerOVIKRecords();
}

OVIKPlatform::~OVIKPlatform()
{
    m_bInstanceFlag = false;
}

bool OVIKPlatform::Init()
{
    if (!connectToBus() || !findService()) {
        return false;
    }
    createObjectProxies();
    return true;
}

bool OVIKPlatform::connectToBus()
{
    m_ovikConnection = openConnection(QDBusConnection::SystemBus);
    if (m_ovikConnection->isConnected()) {
        return true;
    }
    qWarning() << "Failed connecting to DBUS system bus -> try OVIK on session bus";
    closeConnection(m_ovikConnection);
    m_ovikConnection = openConnection(QDBusConnection::SessionBus);
    if (m_ovikConnection->isConnected()) {
        return true;
    }
    qWarning() << "Failed connecting to DBUS session bus -> trying loading OVIK plugin";
    closeConnection(m_ovikConnection);
    m_ovikConnection = nullptr;
    return false;
}

bool OVIKPlatform::findService()
{
    QDBusMessage oReply;
    for (int nRetry = 1; nRetry <= s_nProbes; ++nRetry) {
        oReply = probeService(*m_ovikConnection);
        if (isReply(oReply)) {
            waitForRootObject();
            return true;
        }
        qWarning() << "Error reaching dbus service: " << oReply.errorMessage() << " -> retry #" << nRetry;
    }
    return fallBackToSessionBus(oReply.errorMessage());
}

bool OVIKPlatform::fallBackToSessionBus(const QString& strPingError)
{
    qWarning() << "Error reaching dbus service: " << strPingError
               << " -> try falling back to OVIK session bus";
    QDBusConnection* pSession = openConnection(QDBusConnection::SessionBus);
    if (!pSession->isConnected()) {
        closeConnection(pSession);
        return true;
    }
    const QDBusMessage oReply = probeService(*pSession);
    if (!isReply(oReply)) {
        qWarning() << "No OVIK service running !?" << oReply.errorMessage();
        closeConnection(pSession);
        closeConnection(m_ovikConnection);
        m_ovikConnection = nullptr;
        return false;
    }
    // Required by the device's other software: the root proxy is created on the connection that is given up
    // next.
    waitForRootObject();
    qWarning() << "OVIK running in session bus! " << oReply.errorMessage();
    closeConnection(m_ovikConnection);
    m_ovikConnection = pSession;
    return true;
}

void OVIKPlatform::waitForRootObject()
{
    for (int nAttempt = 0; nAttempt < s_nRootAttempts; ++nAttempt) {
        m_ovik = new ComQuenOVIKInterface(s_szService, s_szRootPath, *m_ovikConnection, this);
        if (m_ovik->isValid()) {
            return;
        }
        delete m_ovik;
        m_ovik = nullptr;
        qWarning() << "Waiting for all OVIK services up and running...";
    }
}

void OVIKPlatform::createObjectProxies()
{
    // An invalid proxy is kept: it serves as soon as the service is there. The texts are the other
    // software's.
    m_systemInfo = createObjectProxy<ComQuenOVIKSystemInfoInterface>(
        QStringLiteral("/SystemInfo"), *m_ovikConnection, "Cannot get /SysteInfo object : ");
    m_mainosInfo = createObjectProxy<ComQuenOVIKPartitionInfoInterface>(
        QStringLiteral("/MainOSInfo"), *m_ovikConnection, "Cannot get /MainOSInfo object : ");
    m_networkManager = createObjectProxy<ComQuenOVIKNetworkManagerInterface>(
        QStringLiteral("/NetworkManager"), *m_ovikConnection, "Cannot get /m_networkManager object : ");
    m_serviceManager = createObjectProxy<ComQuenOVIKServiceManagerInterface>(
        QStringLiteral("/ServiceManager"), *m_ovikConnection, "Cannot get /m_serviceManager object : ");
}

bool OVIKPlatform::isConnectedOrInit()
{
    return m_ovikConnection || Init();
}

bool OVIKPlatform::SetInterfaceName(const char* szName)
{
    ifName = QString::fromUtf8(szName);
    if (ifName.isEmpty()) {
        ifName = s_szDefaultInterface;
    }
    return true;
}

bool OVIKPlatform::GetMacAddress(unsigned char* pAddress) const
{
    std::copy(std::begin(macAddress), std::end(macAddress), pAddress);
    return true;
}

quint32 OVIKPlatform::GetIpAddress() const
{
    return ipAddress;
}

QString OVIKPlatform::GetIpAddressAsString() const
{
    return QHostAddress(ipAddress).toString();
}

// Required by the device's other software: each setter of an address switches DHCP off.
bool OVIKPlatform::SetIpAddress(quint32 nAddress)
{
    ipAddress = nAddress;
    dhcp = false;
    return true;
}

quint32 OVIKPlatform::GetNetmask() const
{
    return netMask;
}

bool OVIKPlatform::SetNetmask(quint32 nNetmask)
{
    netMask = nNetmask;
    dhcp = false;
    return true;
}

quint32 OVIKPlatform::GetGateWay() const
{
    return gateWay;
}

bool OVIKPlatform::SetGateWay(quint32 nGateWay)
{
    gateWay = nGateWay;
    dhcp = false;
    return true;
}

bool OVIKPlatform::GetDHCP() const
{
    return dhcp;
}

bool OVIKPlatform::SetDHCP(bool bDHCP)
{
    dhcp = bDHCP;
    return true;
}

bool OVIKPlatform::UpdateNetworkSettings()
{
    if (!isConnectedOrInit()) {
        return false;
    }
    QDBusPendingReply<QString> oReply = m_networkManager->getInterfaceConfig(ifName);
    oReply.waitForFinished();
    // Required by the device's other software: an error reply is not reported, and the cache keeps what it
    // has.
    if (oReply.isError()) {
        return true;
    }
    Interface oInterface;
    try {
        oInterface.fromJSON(oReply.value());
    } catch (const json::Exception&) {
        return true;
    }
    cacheSettings(oInterface);
    return true;
}

void OVIKPlatform::cacheSettings(const OVIK::NetworkConfiguration::Interface& oInterface)
{
    dhcp = oInterface.dhcp;
    ipAddress = toIPv4(dhcp ? oInterface.actual_ip_address : oInterface.ip_address);
    netMask = toIPv4(dhcp ? oInterface.actual_netmask : oInterface.netmask);
    gateWay = toIPv4(dhcp ? oInterface.actual_gateway_ip : oInterface.gateway_ip);
    // Part by part: the whole text could have any number of them.
    const QString& strMac = oInterface.mac_address;
    int nBegin = 0;
    for (quint8& nByte : macAddress) {
        const int nColon = strMac.indexOf(QLatin1Char(':'), nBegin);
        const int nEnd = nColon < 0 ? strMac.size() : nColon;
        nByte = static_cast<quint8>(strMac.midRef(nBegin, nEnd - nBegin).toInt(nullptr, 16));
        nBegin = std::min(nEnd + 1, strMac.size());
    }
}

bool OVIKPlatform::SetNetworkSettings()
{
    if (!isConnectedOrInit()) {
        return false;
    }
    QDBusPendingReply<QString> oReply = m_networkManager->getInterfaceConfig(ifName);
    oReply.waitForFinished();
    Interface oInterface;
    if (oReply.isError() || !describesInterface(oReply.value(), oInterface)) {
        return false;
    }
    oInterface.dhcp = dhcp;
    if (!dhcp) {
        oInterface.ip_address = QHostAddress(ipAddress).toString();
        oInterface.netmask = QHostAddress(netMask).toString();
        oInterface.gateway_ip = QHostAddress(gateWay).toString();
    }
    m_networkManager->setInterfaceConfigJSON(ifName, oInterface.toJSON());
    // Only a lost connection is an error at once. The reply itself tells less: Qt sends in a thread of its
    // own, so it has no error yet even then, and what the service refuses must go unnoticed however fast it
    // replies.
    if (!m_ovikConnection->isConnected()) {
        return false;
    }
    m_networkManager->applyNewConfiguration();
    return true;
}

QHostAddress OVIKPlatform::GetBestInterfaceIP()
{
    if (!isConnectedOrInit()) {
        return {};
    }
    QDBusPendingReply<QString> oReply = m_networkManager->getConfigJSON();
    oReply.waitForFinished();
    if (oReply.isError()) {
        return {};
    }
    OVIK::NetworkConfiguration oConfiguration;
    try {
        oConfiguration.fromJSON(oReply.value());
    } catch (const json::Exception&) {
        return {};
    }
    for (const Interface* pInterface : std::as_const(oConfiguration.interfaces)) {
        if (!pInterface || pInterface->hidden) {
            continue;
        }
        const QHostAddress oAddress(pInterface->actual_ip_address);
        if (!oAddress.isNull()) {
            return oAddress;
        }
    }
    return {};
}

quint32 OVIKPlatform::GetVersion()
{
    if (!isConnectedOrInit() || version != 0) {
        return version;
    }
    QDBusPendingReply<partitionInfo> oReply = m_mainosInfo->info();
    oReply.waitForFinished();
    if (oReply.isError()) {
        return version;
    }
    const partitionInfo oInfo = oReply.value();
    version =
        versionNumber(oInfo, 11) << 24U | versionNumber(oInfo, 13) << 16U | versionNumber(oInfo, 15) << 8U;
    return version;
}

void OVIKPlatform::restartNTPDService(bool bEnable)
{
    if (!m_serviceManager) {
        return;
    }
    // Every change starts from a daemon that is stopped and disabled.
    m_serviceManager->stop(s_szNTPService);
    m_serviceManager->disable(s_szNTPService);
    if (!bEnable) {
        return;
    }
    m_serviceManager->enable(s_szNTPService);
    m_serviceManager->start(s_szNTPService);
}

bool OVIKPlatform::isNTPDEnabled()
{
    if (!m_serviceManager) {
        return false;
    }
    QDBusPendingReply<bool> oReply = m_serviceManager->enabled(s_szNTPService);
    oReply.waitForFinished();
    return !oReply.isError() && oReply.value();
}

void OVIKPlatform::Reboot()
{
    if (isConnectedOrInit() && m_ovik) {
        m_ovik->restartSystem();
    }
}

void OVIKPlatform::SetDeviceNameAsString(QString strName)
{
    m_deviceName = std::move(strName);
}

QString OVIKPlatform::GetDeviceNameAsString() const
{
    return m_deviceName;
}
