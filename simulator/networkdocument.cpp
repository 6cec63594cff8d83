#include "networkdocument.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QNetworkInterface>
#include <QRegularExpression>
#include <QTimer>

namespace {

const QString s_strActual = "actual_";
const QString s_strInterfaces = "interfaces";
const QString s_strName = "name";
const QString s_strVersion = "version";
const QString s_aAddressKeys[] = {"ip_address", "netmask", "gateway_ip"};

/** Writes text unlike the product's own: sorted keys, line breaks, metrics with a fraction. */
QString textOf(const QJsonObject& oObject)
{
    static const QRegularExpression s_oMetric(QStringLiteral("(metric\": \\d+)"));
    return QString::fromUtf8(QJsonDocument(oObject).toJson()).replace(s_oMetric, "\\1.0");
}

QJsonObject objectOf(const QString& strJSON)
{
    return QJsonDocument::fromJson(strJSON.toUtf8()).object();
}

QJsonObject describe(const QNetworkInterface& oInterface, int nInterface)
{
    const QString strNetwork = QStringLiteral("192.168.%1.").arg(nInterface % 256);
    const QString aAddresses[] = {strNetwork + "20", "255.255.255.0", strNetwork + "1"};
    QJsonObject oDescription = {{s_strName, oInterface.name()},
                                {"mac_address", oInterface.hardwareAddress()},
                                {"configured", true},
                                {"readonly", false},
                                {"virtual", false},
                                {"hidden", false}};
    for (int i = 0; i < 3; ++i) {
        oDescription.insert(s_aAddressKeys[i], aAddresses[i]);
        oDescription.insert(s_strActual + s_aAddressKeys[i], aAddresses[i]);
    }
    return oDescription;
}

/** Returns the lease that an interface gets, nHost is the number of a free address. */
QJsonObject leaseOf(const QJsonObject& oInterface, int nHost)
{
    if (oInterface.value(s_strActual + s_aAddressKeys[0]).toString().isEmpty()) {
        return {{s_aAddressKeys[0], QStringLiteral("192.168.200.%1").arg(nHost % 256)},
                {s_aAddressKeys[1], "255.255.255.0"},
                {s_aAddressKeys[2], "192.168.200.1"}};
    }
    QJsonObject oLease;
    for (const QString& strKey : s_aAddressKeys) {
        oLease.insert(strKey, oInterface.value(s_strActual + strKey));
    }
    return oLease;
}

} // namespace

NetworkDocument::NetworkDocument(int nLeaseDelayMs) : m_nLeaseDelayMs(nLeaseDelayMs)
{
    QJsonArray oInterfaces;
    for (const QNetworkInterface& oInterface : QNetworkInterface::allInterfaces()) {
        const bool bLoopback = oInterface.flags().testFlag(QNetworkInterface::IsLoopBack);
        if (!bLoopback && oInterface.type() != QNetworkInterface::CanBus) {
            oInterfaces.append(describe(oInterface, static_cast<int>(oInterfaces.size())));
        }
    }
    load(textOf({{s_strVersion, 1}, {"hostname", "simulated"}, {s_strInterfaces, oInterfaces}}));
}

bool NetworkDocument::load(const QString& strJSON)
{
    const QJsonObject oDocument = objectOf(strJSON);
    QMap<QString, QJsonObject> oInterfaces;
    for (const QJsonValue oValue : oDocument.value(s_strInterfaces).toArray()) {
        const QString strName = oValue.toObject().value(s_strName).toString();
        if (strName.isEmpty() || oInterfaces.contains(strName)) {
            return false;
        }
        oInterfaces.insert(strName, oValue.toObject());
    }
    if (!oDocument.value(s_strVersion).isDouble()) {
        return false;
    }
    m_oDocument = oDocument;
    m_oInterfaces = oInterfaces;
    m_oChanged.clear();
    m_oRequests.clear();
    m_oLeases.clear();
    for (const QString& strName : m_oInterfaces.keys()) {
        m_oLeases.insert(strName, leaseOf(m_oInterfaces[strName], 100 + static_cast<int>(m_oLeases.size())));
    }
    return true;
}

QString NetworkDocument::toJSON() const
{
    QJsonArray oInterfaces;
    for (const QJsonObject& oInterface : m_oInterfaces) {
        oInterfaces.prepend(oInterface); // in descending order: clients must not rely on an order
    }
    QJsonObject oDocument = m_oDocument;
    oDocument.insert(s_strInterfaces, oInterfaces);
    return textOf(oDocument);
}

QString NetworkDocument::interfaceJSON(const QString& strName) const
{
    return m_oInterfaces.contains(strName) ? textOf(m_oInterfaces.value(strName)) : QString();
}

bool NetworkDocument::merge(const QString& strName, const QString& strJSON)
{
    const QJsonObject oChanges = objectOf(strJSON);
    const auto it = m_oInterfaces.find(strName);
    if (it == m_oInterfaces.end() || oChanges.value(s_strName) != strName) {
        return false;
    }
    for (const QString& strKey : oChanges.keys()) {
        if (!strKey.startsWith(s_strActual)) {
            it->insert(strKey, oChanges.value(strKey));
        }
    }
    m_oChanged.insert(strName);
    return true;
}

void NetworkDocument::apply()
{
    for (const QString& strName : std::as_const(m_oChanged)) {
        m_oRequests.remove(strName);
        if (m_oInterfaces[strName].value("dhcp").toBool()) {
            requestLease(strName);
        } else {
            put(strName, m_oInterfaces[strName]);
        }
    }
    m_oChanged.clear();
}

void NetworkDocument::requestLease(const QString& strName)
{
    put(strName, {});
    // A later change or another document voids the lease.
    const int nRequest = ++m_nRequest;
    m_oRequests.insert(strName, nRequest);
    QTimer::singleShot(m_nLeaseDelayMs, this, [this, strName, nRequest] {
        if (m_oRequests.value(strName) == nRequest) {
            put(strName, m_oLeases.value(strName));
        }
    });
}

void NetworkDocument::put(const QString& strName, const QJsonObject& oAddresses)
{
    QJsonObject& oInterface = m_oInterfaces[strName];
    for (const QString& strKey : s_aAddressKeys) {
        oInterface.insert(s_strActual + strKey, oAddresses.value(strKey)); // removes it if there is none
    }
}
