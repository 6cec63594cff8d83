#pragma once

#include "network/networkinterfacedetails.h"

class QBoxLayout;
class QLabel;
class QLayout;
class QObject;
class QWidget;

/** The value labels of one network interface; all are owned by the widget tree. */
struct sNetworkInterfaceUIDetails
{
    QLabel* m_pIPAddressLabel;
    QLabel* m_pSubnetMaskLabel;
    QLabel* m_pStdGatewayLabel;
};

/**
 * Inserts an empty block for the rows of an interface into a column.
 * @param pAnchor widget of the column; the block is inserted before it
 * @return the block's layout, with the column's spacing
 */
QLayout* insertBlock(QBoxLayout* pColumn, QWidget* pAnchor);

/**
 * Shows the addresses of an interface.
 * @param strWaiting shown in place of the address while DHCP has not assigned one
 */
void showDetails(const sNetworkInterfaceUIDetails& oLabels, const sNetworkInterfaceDetails& oDetails,
                 const QString& strWaiting);

/** Returns whether an object is one of the labels. */
bool isOneOf(const sNetworkInterfaceUIDetails& oLabels, const QObject* pObject);
