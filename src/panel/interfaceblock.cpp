#include "panel/interfaceblock.h"

#include <QBoxLayout>
#include <QHostAddress>
#include <QLabel>

QLayout* insertBlock(QBoxLayout* pColumn, QWidget* pAnchor)
{
    auto* pBlock = new QWidget(pColumn->parentWidget());
    auto* pRows = new QVBoxLayout(pBlock);
    pRows->setContentsMargins(1, 0, 6, 0);
    pRows->setSpacing(pColumn->spacing());
    pColumn->insertWidget(pColumn->indexOf(pAnchor), pBlock);
    return pRows;
}

void showDetails(const sNetworkInterfaceUIDetails& oLabels, const sNetworkInterfaceDetails& oDetails,
                 const QString& strWaiting)
{
    // Without a lease the address is none, which the platform client reports as 0.0.0.0.
    const bool bWaits = oDetails.m_bISDHCP && QHostAddress(oDetails.m_strIPAddress).toIPv4Address() == 0;
    oLabels.m_pIPAddressLabel->setText(bWaits ? strWaiting : oDetails.m_strIPAddress);
    oLabels.m_pSubnetMaskLabel->setText(bWaits ? QString() : oDetails.m_strSubnetMask);
    oLabels.m_pStdGatewayLabel->setText(bWaits ? QString() : oDetails.m_strStdGateway);
}

bool isOneOf(const sNetworkInterfaceUIDetails& oLabels, const QObject* pObject)
{
    return pObject == oLabels.m_pIPAddressLabel || pObject == oLabels.m_pSubnetMaskLabel ||
           pObject == oLabels.m_pStdGatewayLabel;
}
