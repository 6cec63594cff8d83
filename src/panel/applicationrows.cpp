#include "panel/applicationrows.h"

#include "panel/panelinfo.h"
#include "panel/panelstyle.h"
#include "panel/rowlabel.h"
#include "ui_tarnixUIwidget.h"

namespace {

QLabel* appendLabel(QLayout* pColumn, const QLabel* pLike, const QString& strText, eLabelType eType,
                    const PanelInfo& oPanelInfo)
{
    // A child of the window until it is styled: this saves a tenth of all allocations.
    auto* pLabel = new RowLabel(strText, pLike->window());
    styleInfoLabel(pLabel, eType, oPanelInfo);
    pLabel->setIndent(pLike->indent());
    pColumn->addWidget(pLabel);
    return pLabel;
}

sAppStatusUIDetails createRow(const Ui_MorvaWidget& oForm, const PanelInfo& oPanelInfo)
{
    const auto fnCaption = [&](const QString& strText) {
        return appendLabel(oForm.captionLayout, oForm.appname_Label, strText, eType_Label, oPanelInfo);
    };
    const auto fnValue = [&] {
        return appendLabel(oForm.valueLayout, oForm.appnameForm_Label, QString(), eType_Form, oPanelInfo);
    };
    sAppStatusUIDetails oRow{};
    oRow.m_pStatLabel = fnCaption(oPanelInfo.szLbl_PLCStatus);
    oRow.m_pAppNameLabel = fnCaption(oPanelInfo.szLbl_AppName);
    oRow.m_pStatFormLabel = fnValue();
    oRow.m_pAppFormLabel = fnValue();
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
