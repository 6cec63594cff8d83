#include "touch/dialogfit.h"

#include "touch/formarea.h"
#include "touch/touchsheet.h"
#include "window/visiblescreen.h"

#include <QDateTimeEdit>
#include <QDialog>
#include <QFormLayout>

#include <algorithm>

namespace {

constexpr int s_nGap = 6;
constexpr int s_nFieldFrame = 16; // border and padding, as in the style sheet
constexpr int s_aTargets[] = {48, 40};

void shareWidth(QLayout* pButtons)
{
    pButtons->setContentsMargins(0, 0, 0, 0);
    pButtons->setSpacing(s_nGap);
    for (int i = 0; i < pButtons->count(); ++i) {
        if (QSpacerItem* pSpacer = pButtons->itemAt(i)->spacerItem()) {
            pSpacer->changeSize(0, 0, QSizePolicy::Fixed, QSizePolicy::Fixed);
        }
        if (QWidget* pButton = pButtons->itemAt(i)->widget()) {
            pButton->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
        }
    }
}

// Otherwise the hints would be those of the previous look until the dialog is shown.
void refreshHints(const QDialog& oDialog)
{
    const QList<QWidget*> oWidgets = oDialog.findChildren<QWidget*>();
    for (const QWidget* pWidget : oWidgets) {
        pWidget->ensurePolished();
    }
    std::for_each(oWidgets.rbegin(), oWidgets.rend(), [](QWidget* pWidget) { // the inner ones first
        if (pWidget->layout()) {
            pWidget->layout()->activate();
        }
        pWidget->updateGeometry();
    });
}

// Their own hint leaves no room for the arrow beside the text.
void fitDateFields(const QDialog& oDialog, int nTarget)
{
    const QList<QDateTimeEdit*> oFields = oDialog.findChildren<QDateTimeEdit*>();
    for (QDateTimeEdit* pField : oFields) {
        const int nText = pField->fontMetrics().horizontalAdvance(pField->text() + ' ');
        pField->setMinimumWidth(nText + nTarget + s_nFieldFrame);
    }
}

} // namespace

FormArea* makeScrollable(QFormLayout* pForm, QBoxLayout* pRows)
{
    const int nForm = pRows->indexOf(pForm);
    pRows->removeItem(pForm);
    pForm->setParent(nullptr);
    int nBelow = nForm;
    while (nBelow < pRows->count() - 1) {
        QWidget* pBelow = pRows->itemAt(nBelow)->widget();
        if (pBelow) {
            pRows->removeWidget(pBelow);
            pForm->setWidget(pForm->rowCount(), QFormLayout::FieldRole, pBelow);
        } else {
            ++nBelow; // a layout stays where it is
        }
    }
    auto* pArea = new FormArea(pForm);
    pRows->insertWidget(nForm, pArea);
    pRows->setSpacing(s_nGap);
    if (QLayout* pButtons = pRows->itemAt(pRows->count() - 1)->layout()) {
        shareWidth(pButtons);
    }
    return pArea;
}

void fitDialog(QDialog* pDialog, FormArea* pArea, const QFont& oFont)
{
    const QSize oInitial = pDialog->size();
    const QSize oScreen = visibleScreenRect().size();
    for (const int nTarget : s_aTargets) {
        pDialog->setStyleSheet(touchSheet(nTarget, oFont));
        refreshHints(*pDialog);
        fitDateFields(*pDialog, nTarget);
        refreshHints(*pDialog);
        if (pDialog->minimumSizeHint().width() > oScreen.width()) {
            pArea->wrapRows();
            refreshHints(*pDialog);
        }
        const QSize oWanted = pDialog->sizeHint().expandedTo({pDialog->width(), 0});
        pDialog->resize(oWanted.expandedTo(oInitial).boundedTo(oScreen));
        if (oWanted.height() <= oScreen.height()) {
            return;
        }
    }
}
