#include "panel/interfacesettings.h"

#include "platform/ovikplatform.h"

#include <QHostAddress>
#include <QNetworkInterface>

namespace {

QString macText(const OVIKPlatform* pPlatform)
{
    unsigned char oMac[6] = {};
    pPlatform->GetMacAddress(oMac);
    QStringList oParts;
    for (const unsigned char nByte : oMac) {
        oParts.append(QString::number(nByte, 16)); // Kept, see docs/compatibility.md
    }
    return oParts.join(':');
}

} // namespace

sNetworkInterfaceDetails InterfaceSettings::read(const QString& strName)
{
    OVIKPlatform* pPlatform = OVIKPlatform::getInstance();
    // The platform client's one cache may hold another interface.
    if (!pPlatform->SetInterfaceName(strName.toLatin1().constData()) || !pPlatform->UpdateNetworkSettings() ||
        !pPlatform->HasReadNetworkSettings()) {
        return m_oLastRead.value(strName);
    }
    sNetworkInterfaceDetails& oDetails = m_oLastRead[strName];
    oDetails.m_strName = strName;
    oDetails.m_strMacId = macText(pPlatform);
    oDetails.m_bISDHCP = pPlatform->GetDHCP();
    oDetails.m_strIPAddress = pPlatform->GetIpAddressAsString();
    oDetails.m_strSubnetMask = QHostAddress(pPlatform->GetNetmask()).toString();
    oDetails.m_strStdGateway = QHostAddress(pPlatform->GetGateWay()).toString();
    return oDetails;
}

QList<sNetworkInterfaceDetails> InterfaceSettings::readAll()
{
    QList<sNetworkInterfaceDetails> oList;
    const QList<QNetworkInterface> oInterfaces = QNetworkInterface::allInterfaces();
    for (const QNetworkInterface& oInterface : oInterfaces) {
        if (oInterface.type() == QNetworkInterface::CanBus ||
            oInterface.flags().testFlag(QNetworkInterface::IsLoopBack)) {
            continue;
        }
        sNetworkInterfaceDetails oDetails = read(oInterface.name());
        oDetails.m_strName = oInterface.name(); // also while the service is absent: blocks are kept by name
        oList.append(oDetails);
    }
    return oList;
}

bool InterfaceSettings::write(const sNetworkInterfaceDetails& oDetails)
{
    OVIKPlatform* pPlatform = OVIKPlatform::getInstance();
    if (!pPlatform->SetInterfaceName(oDetails.m_strName.toLatin1().constData())) {
        return true; // Kept, see docs/compatibility.md
    }
    pPlatform->SetIpAddress(QHostAddress(oDetails.m_strIPAddress).toIPv4Address());
    pPlatform->SetNetmask(QHostAddress(oDetails.m_strSubnetMask).toIPv4Address());
    pPlatform->SetGateWay(QHostAddress(oDetails.m_strStdGateway).toIPv4Address());
    pPlatform->SetDHCP(oDetails.m_bISDHCP); // after the addresses, which clear it
    return pPlatform->SetNetworkSettings();
}

QList<sNetworkInterfaceDetails> InterfaceSettings::testDetails()
{
    // Kept, see docs/compatibility.md
    QList<sNetworkInterfaceDetails> oList;
    for (const char* szNumber : {"0", "1", "2"}) {
        sNetworkInterfaceDetails oDetails;
        oDetails.m_strName = QStringLiteral("eth%1").arg(szNumber);
        oDetails.m_strIPAddress = QStringLiteral("192.168.2.10%1").arg(szNumber);
        oDetails.m_strSubnetMask = QStringLiteral("255.255.255.0");
        oDetails.m_strStdGateway = QStringLiteral("192.168.2.1");
        oList.append(oDetails);
    }
    return oList;
}
