#include "platform/ovikplatform.h"

#include "OVIKProxy.h"
#include "platform/ovikbus.h"

#include <QDBusPendingReply>
#include <QDebug>

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <utility>

namespace {

using Interface = OVIK::NetworkConfiguration::Interface;

constexpr char s_szDefaultInterface[] = "eth0";
const QLatin1String s_oNTPService("ntpd"); // a wrong type in the description does not compile
constexpr int s_nRootAttempts = 3;

template<typename Proxy>
Proxy* createObjectProxy(const QString& strPath, const QDBusConnection& oConnection,
                         const char* szInvalidText)
{
    auto* pProxy = new Proxy(ovikbus::s_szService, strPath, oConnection, nullptr);
    if (!pProxy->isValid()) {
        qWarning() << szInvalidText << oConnection.lastError();
    }
    return pProxy;
}

quint32 toIPv4(const QString& strAddress)
{
    return QHostAddress(strAddress).toIPv4Address();
}

/**
 * Waits for the reply and takes its value. Returns false on an error reply.
 *
 * Does not compile if the description of the interface has another type than the variable.
 */
template<typename Value>
bool readValue(QDBusPendingReply<Value> oReply, Value& oValue)
{
    oReply.waitForFinished();
    if (oReply.isError()) {
        return false;
    }
    oValue = oReply.value();
    return true;
}

/**
 * Waits for the reply and reads its JSON text into the record.
 *
 * Returns false on an error reply, and if a value has another type than its key asks for. A text that is not
 * a JSON object leaves the record as it is.
 */
template<typename Text, typename Record>
bool readRecord(const QDBusPendingReply<Text>& oReply, Record& oRecord)
{
    QString strText;
    if (!readValue(oReply, strText)) {
        return false;
    }
    try {
        oRecord.fromJSON(strText);
        return true;
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
    m_ovikConnection = ovikbus::connectToService(
        [this](const QDBusConnection& oConnection) { waitForRootObject(oConnection); });
    if (!m_ovikConnection) {
        return false;
    }
    createObjectProxies();
    return true;
}

void OVIKPlatform::waitForRootObject(const QDBusConnection& oConnection)
{
    for (int nAttempt = 0; nAttempt < s_nRootAttempts; ++nAttempt) {
        m_ovik = new ComQuenOVIKInterface(ovikbus::s_szService, ovikbus::s_szRootPath, oConnection, this);
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
    // An invalid proxy is kept: it works as soon as the service is there.
    // Kept, see docs/compatibility.md
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

// Kept, see docs/compatibility.md
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

// Kept, see docs/compatibility.md
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

// Kept, see docs/compatibility.md
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
    m_bHasReadSettings = false;
    if (!isConnectedOrInit()) {
        return false;
    }
    Interface oInterface;
    m_bHasReadSettings = readRecord(m_networkManager->getInterfaceConfig(ifName), oInterface);
    if (m_bHasReadSettings) {
        cacheSettings(oInterface);
    }
    // Kept, see docs/compatibility.md
    return true;
}

bool OVIKPlatform::HasReadNetworkSettings() const
{
    return m_bHasReadSettings;
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
        const auto nColon = static_cast<int>(strMac.indexOf(QLatin1Char(':'), nBegin));
        const int nLength = nColon < 0 ? -1 : nColon - nBegin;
        nByte = static_cast<quint8>(strMac.mid(nBegin, nLength).toInt(nullptr, 16));
        if (nColon < 0) {
            break; // Kept, see docs/compatibility.md
        }
        nBegin = nColon + 1;
    }
}

bool OVIKPlatform::SetNetworkSettings()
{
    m_oSentCalls.clear();
    if (!isConnectedOrInit()) {
        return false;
    }
    Interface oInterface;
    if (!readRecord(m_networkManager->getInterfaceConfig(ifName), oInterface) || oInterface.name.isEmpty()) {
        return false;
    }
    oInterface.dhcp = dhcp;
    if (!dhcp) {
        oInterface.ip_address = QHostAddress(ipAddress).toString();
        oInterface.netmask = QHostAddress(netMask).toString();
        oInterface.gateway_ip = QHostAddress(gateWay).toString();
    }
    m_oSentCalls.append(
        {"setInterfaceConfigJSON", m_networkManager->setInterfaceConfigJSON(ifName, oInterface.toJSON())});
    // Only a lost connection is an error at once. The pending reply does not show it: Qt sends in a thread of
    // its own, and an error that the service replies does not count here, however fast it comes.
    // Kept, see docs/compatibility.md
    if (!m_ovikConnection->isConnected()) {
        return false;
    }
    m_oSentCalls.append({"applyNewConfiguration", m_networkManager->applyNewConfiguration()});
    return true;
}

PendingReplies* OVIKPlatform::watchReplies()
{
    return new PendingReplies(m_oSentCalls, this);
}

QHostAddress OVIKPlatform::GetBestInterfaceIP()
{
    if (!isConnectedOrInit()) {
        return {};
    }
    OVIK::NetworkConfiguration oConfiguration;
    if (!readRecord(m_networkManager->getConfigJSON(), oConfiguration)) {
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
    partitionInfo oInfo;
    if (!readValue(m_mainosInfo->info(), oInfo)) {
        return version;
    }
    version =
        versionNumber(oInfo, 11) << 24U | versionNumber(oInfo, 13) << 16U | versionNumber(oInfo, 15) << 8U;
    return version;
}

void OVIKPlatform::restartNTPDService(bool bEnable)
{
    m_oSentCalls.clear();
    if (!m_serviceManager) {
        return;
    }
    // Every change starts from a daemon that is stopped and disabled.
    // Kept, see docs/compatibility.md
    m_oSentCalls.append({"stop", m_serviceManager->stop(s_oNTPService)});
    m_oSentCalls.append({"disable", m_serviceManager->disable(s_oNTPService)});
    if (!bEnable) {
        return;
    }
    m_oSentCalls.append({"enable", m_serviceManager->enable(s_oNTPService)});
    m_oSentCalls.append({"start", m_serviceManager->start(s_oNTPService)});
}

bool OVIKPlatform::isNTPDEnabled()
{
    if (!m_serviceManager) {
        return false;
    }
    bool bEnabled = false;
    return readValue(m_serviceManager->enabled(s_oNTPService), bEnabled) && bEnabled;
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
