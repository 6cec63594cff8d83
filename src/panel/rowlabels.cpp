#include "panel/rowlabels.h"

#include <QBoxLayout>
#include <QHostAddress>
#include <QLabel>

namespace {

constexpr int s_nMaxTextLength = 65536; // megabytes would take seconds to lay out

QString beginningOf(const QString& strText)
{
    const bool bSplitsCharacter =
        strText.size() > s_nMaxTextLength && strText[s_nMaxTextLength - 1].isHighSurrogate();
    return strText.left(bSplitsCharacter ? s_nMaxTextLength - 1 : s_nMaxTextLength);
}

} // namespace

void showText(QLabel* pLabel, const QString& strText)
{
    // Out of sight it needs no paint, see PlainLabel.
    pLabel->setAttribute(Qt::WA_UpdatesDisabled, pLabel->visibleRegion().isEmpty());
    pLabel->setText(beginningOf(strText));
    pLabel->setAttribute(Qt::WA_UpdatesDisabled, false);
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

void setRowVisible(const sAppStatusUIDetails& oLabels, bool bVisible)
{
    for (QLabel* pLabel :
         {oLabels.m_pAppNameLabel, oLabels.m_pAppFormLabel, oLabels.m_pStatLabel, oLabels.m_pStatFormLabel}) {
        pLabel->setVisible(bVisible);
    }
}

QLayout* insertBlock(QBoxLayout* pColumn, QWidget* pAnchor, int nSpacing)
{
    auto* pBlock = new QWidget(pColumn->parentWidget());
    auto* pRows = new QVBoxLayout(pBlock);
    pRows->setContentsMargins(1, 0, 6, 0);
    pRows->setSpacing(nSpacing);
    pColumn->insertWidget(pColumn->indexOf(pAnchor), pBlock);
    return pRows;
}

QList<QWidget*> rowsOf(const QBoxLayout* pColumn)
{
    QList<QWidget*> oRows;
    for (int i = 0; i < pColumn->count(); ++i) {
        QWidget* pWidget = pColumn->itemAt(i)->widget();
        if (const auto* pBlock = qobject_cast<QBoxLayout*>(pWidget->layout())) {
            oRows += rowsOf(pBlock);
        } else {
            oRows.append(pWidget);
        }
    }
    return oRows;
}
