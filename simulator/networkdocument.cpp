#include "networkdocument.h"

#include "json/reader.h"

#include <QNetworkInterface>
#include <QSysInfo>
#include <QTimer>

#include <sstream>

namespace {

/** Reads strJSON into oTarget; false when it is no such record. */
template<typename Record>
bool read(const QString& strJSON, Record& oTarget)
{
    try {
        std::istringstream oStream(strJSON.toStdString());
        json::Object oObject;
        json::Reader::Read(oObject, oStream);
        return oTarget.fromJSONObject(oObject);
    } catch (const json::Exception&) {
        return false;
    }
}

/** Returns the first address of the network that oEntry is in, where its gateway usually is. */
QString gatewayOf(const QNetworkAddressEntry& oEntry)
{
    return QHostAddress((oEntry.ip().toIPv4Address() & oEntry.netmask().toIPv4Address()) + 1).toString();
}

QNetworkAddressEntry ipv4EntryOf(const QNetworkInterface& oInterface, int nInterface)
{
    for (const QNetworkAddressEntry& oEntry : oInterface.addressEntries()) {
        if (oEntry.ip().protocol() == QAbstractSocket::IPv4Protocol) {
            return oEntry;
        }
    }
    QNetworkAddressEntry oEntry;
    oEntry.setIp(QHostAddress(QStringLiteral("192.168.%1.20").arg(nInterface % 256)));
    oEntry.setPrefixLength(24);
    return oEntry;
}

OVIK::NetworkConfiguration::Interface* describe(const QNetworkInterface& oInterface, int nInterface)
{
    const QNetworkAddressEntry oEntry = ipv4EntryOf(oInterface, nInterface);
    auto* pInterface = new OVIK::NetworkConfiguration::Interface;
    pInterface->name = oInterface.name();
    pInterface->mac_address = oInterface.hardwareAddress();
    pInterface->ip_address = pInterface->actual_ip_address = oEntry.ip().toString();
    pInterface->netmask = pInterface->actual_netmask = oEntry.netmask().toString();
    pInterface->gateway_ip = pInterface->actual_gateway_ip = gatewayOf(oEntry);
    pInterface->configured = true;
    pInterface->readOnly = pInterface->virt = pInterface->hidden = false;
    return pInterface;
}

} // namespace

NetworkDocument::NetworkDocument(int nLeaseDelayMs, QObject* pParent)
    : QObject(pParent), m_nLeaseDelayMs(nLeaseDelayMs),
      m_pConfiguration(std::make_unique<OVIK::NetworkConfiguration>())
{
}

QString NetworkDocument::ofThisMachine()
{
    OVIK::NetworkConfiguration oConfiguration;
    oConfiguration.version = 1;
    oConfiguration.hostname = QSysInfo::machineHostName();
    for (const QNetworkInterface& oInterface : QNetworkInterface::allInterfaces()) {
        const bool bLoopback = oInterface.flags().testFlag(QNetworkInterface::IsLoopBack);
        if (bLoopback || oInterface.type() == QNetworkInterface::CanBus) {
            continue;
        }
        oConfiguration.interfaces.insert(oInterface.name(),
                                         describe(oInterface, oConfiguration.interfaces.size()));
    }
    return oConfiguration.toJSON();
}

bool NetworkDocument::load(const QString& strJSON)
{
    auto pConfiguration = std::make_unique<OVIK::NetworkConfiguration>();
    if (!read(strJSON, *pConfiguration)) {
        return false;
    }
    m_pConfiguration = std::move(pConfiguration);
    m_oChanged.clear();
    m_oRequests.clear();
    rememberLeases();
    return true;
}

void NetworkDocument::rememberLeases()
{
    m_oLeases.clear();
    int nHost = 100;
    for (const Interface* pInterface : std::as_const(m_pConfiguration->interfaces)) {
        const sLease oFree = {QStringLiteral("192.168.200.%1").arg(nHost++ % 256),
                              QStringLiteral("255.255.255.0"), QStringLiteral("192.168.200.1")};
        const sLease oActual = {pInterface->actual_ip_address, pInterface->actual_netmask,
                                pInterface->actual_gateway_ip};
        m_oLeases.insert(pInterface->name, oActual.m_strAddress.isEmpty() ? oFree : oActual);
    }
}

QString NetworkDocument::toJSON() const
{
    return m_pConfiguration->toJSON();
}

QString NetworkDocument::interfaceJSON(const QString& strName) const
{
    const Interface* pInterface = m_pConfiguration->interfaces.value(strName);
    return pInterface ? pInterface->toJSON() : QString();
}

bool NetworkDocument::merge(const QString& strName, const QString& strJSON)
{
    Interface* pInterface = m_pConfiguration->interfaces.value(strName);
    if (!pInterface) {
        return false;
    }
    Interface oMerged = *pInterface;
    if (!read(strJSON, oMerged) || oMerged.name != strName) {
        return false;
    }
    oMerged.actual_ip_address = pInterface->actual_ip_address;
    oMerged.actual_netmask = pInterface->actual_netmask;
    oMerged.actual_gateway_ip = pInterface->actual_gateway_ip;
    oMerged.actual_metric = pInterface->actual_metric;
    *pInterface = oMerged;
    m_oChanged.insert(strName);
    return true;
}

void NetworkDocument::apply()
{
    for (const QString& strName : std::as_const(m_oChanged)) {
        const Interface* pInterface = m_pConfiguration->interfaces.value(strName);
        m_oRequests.remove(strName);
        if (pInterface->dhcp) {
            requestLease(strName);
        } else {
            put(strName, {pInterface->ip_address, pInterface->netmask, pInterface->gateway_ip});
        }
    }
    m_oChanged.clear();
}

void NetworkDocument::requestLease(const QString& strName)
{
    put(strName, {});
    // A later change or another document makes the lease void.
    const int nRequest = ++m_nRequest;
    m_oRequests.insert(strName, nRequest);
    QTimer::singleShot(m_nLeaseDelayMs, this, [this, strName, nRequest] {
        if (m_oRequests.value(strName) == nRequest) {
            put(strName, m_oLeases.value(strName));
        }
    });
}

void NetworkDocument::put(const QString& strName, const sLease& oAddresses)
{
    Interface* pInterface = m_pConfiguration->interfaces.value(strName);
    pInterface->actual_ip_address = oAddresses.m_strAddress;
    pInterface->actual_netmask = oAddresses.m_strNetmask;
    pInterface->actual_gateway_ip = oAddresses.m_strGateway;
    pInterface->actual_metric = pInterface->metric;
}
