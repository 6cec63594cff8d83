#pragma once

#include "network/networkinterfacedetails.h"

#include <QList>

class QBoxLayout;
class QLabel;
class QLayout;
class QObject;
class QWidget;

/** The labels of one application beyond the first; all are owned by the widget tree. */
struct sAppStatusUIDetails
{
    QLabel* m_pAppNameLabel;  /**< caption of the application's name */
    QLabel* m_pAppFormLabel;  /**< the application's name */
    QLabel* m_pStatLabel;     /**< caption of the PLC status */
    QLabel* m_pStatFormLabel; /**< the PLC status */
};

/** The value labels of one network interface; all are owned by the widget tree. */
struct sNetworkInterfaceUIDetails
{
    QLabel* m_pIPAddressLabel;
    QLabel* m_pSubnetMaskLabel;
    QLabel* m_pStdGatewayLabel;
};

/** Shows a text of the runtime as it stands; of one longer than 65536 UTF-16 units only the beginning. */
void showText(QLabel* pLabel, const QString& strText);

/**
 * Shows the addresses of an interface.
 * @param strWaiting shown in place of the address while DHCP has not assigned one
 */
void showDetails(const sNetworkInterfaceUIDetails& oLabels, const sNetworkInterfaceDetails& oDetails,
                 const QString& strWaiting);

/** Returns whether an object is one of the labels. */
bool isOneOf(const sNetworkInterfaceUIDetails& oLabels, const QObject* pObject);

/** Shows or hides all labels of an application. */
void setRowVisible(const sAppStatusUIDetails& oLabels, bool bVisible);

/**
 * Inserts an empty block for the rows of an interface into a column.
 * @param pAnchor the widget of the column that the block comes before
 * @param nSpacing gap between two rows in pixels
 * @return the block's layout
 */
QLayout* insertBlock(QBoxLayout* pColumn, QWidget* pAnchor, int nSpacing);

/** Returns the rows of a column, those of its blocks one by one, from top to bottom. */
QList<QWidget*> rowsOf(const QBoxLayout* pColumn);
