#include "panel/applicationrows.h"

#include "panel/panelinfo.h"
#include "panel/panelstyle.h"
#include "panel/rowlabel.h"
#include "ui_tarnixUIwidget.h"

namespace {

QLabel* appendLabel(QLayout* pColumn, const QString& strText, const QLabel* pLike)
{
    auto* pLabel = new RowLabel(strText, pColumn->parentWidget());
    pLabel->setIndent(pLike->indent());
    pColumn->addWidget(pLabel);
    return pLabel;
}

QLabel* appendCaption(const QString& strText, const Ui_MorvaWidget& oForm, const PanelInfo& oPanelInfo)
{
    QLabel* pLabel = appendLabel(oForm.captionLayout, strText, oForm.appname_Label);
    styleInfoLabel(pLabel, eType_Label, oPanelInfo);
    return pLabel;
}

QLabel* appendValue(const Ui_MorvaWidget& oForm, const PanelInfo& oPanelInfo)
{
    QLabel* pLabel = appendLabel(oForm.valueLayout, QString(), oForm.appnameForm_Label);
    styleInfoLabel(pLabel, eType_Form, oPanelInfo);
    return pLabel;
}

sAppStatusUIDetails createRow(const Ui_MorvaWidget& oForm, const PanelInfo& oPanelInfo)
{
    sAppStatusUIDetails oRow{};
    oRow.m_pStatLabel = appendCaption(oPanelInfo.szLbl_PLCStatus, oForm, oPanelInfo);
    oRow.m_pAppNameLabel = appendCaption(oPanelInfo.szLbl_AppName, oForm, oPanelInfo);
    oRow.m_pStatFormLabel = appendValue(oForm, oPanelInfo);
    oRow.m_pAppFormLabel = appendValue(oForm, oPanelInfo);
    if (oForm.appname_Label->wordWrap()) { // has been measured, and has the same text
        fitRow(oRow.m_pAppNameLabel, oRow.m_pAppFormLabel, oPanelInfo);
    }
    return oRow;
}

void setRowVisible(const sAppStatusUIDetails& oRow, bool bVisible)
{
    for (QLabel* pLabel :
         {oRow.m_pAppNameLabel, oRow.m_pAppFormLabel, oRow.m_pStatLabel, oRow.m_pStatFormLabel}) {
        pLabel->setVisible(bVisible);
    }
}

} // namespace

void showApplicationRows(QMap<int, sAppStatusUIDetails>& oRows, int nCount, const Ui_MorvaWidget& oForm,
                         const PanelInfo& oPanelInfo)
{
    // Otherwise Qt lays out all rows again, and looks for the one under the finger, for each that appears.
    oForm.scrollAreaWidgetContents->hide();
    for (auto it = oRows.lowerBound(nCount); it != oRows.end(); ++it) {
        setRowVisible(*it, false);
    }
    for (int nKey = 0; nKey < nCount; ++nKey) {
        auto it = oRows.find(nKey);
        if (it == oRows.end()) {
            it = oRows.insert(nKey, createRow(oForm, oPanelInfo));
        }
        setRowVisible(*it, true);
    }
    oForm.scrollAreaWidgetContents->show();
}
