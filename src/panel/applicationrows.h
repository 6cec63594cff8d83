#pragma once

#include <QMap>

class QLabel;
class Ui_MorvaWidget;
struct PanelInfo;

/** The labels of one application beyond the first; all are owned by the widget tree. */
struct sAppStatusUIDetails
{
    QLabel* m_pAppNameLabel;  /**< caption of the application's name */
    QLabel* m_pAppFormLabel;  /**< the application's name */
    QLabel* m_pStatLabel;     /**< caption of the PLC status */
    QLabel* m_pStatFormLabel; /**< the PLC status */
};

/**
 * Shows the rows of the applications with the keys 0 to nCount - 1, below the fixed rows of the form, and
 * hides the others. Creates missing rows, with empty values.
 */
void showApplicationRows(QMap<int, sAppStatusUIDetails>& oRows, int nCount, const Ui_MorvaWidget& oForm,
                         const PanelInfo& oPanelInfo);
