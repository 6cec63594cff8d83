#include "touch/touchdialog.h"

#include "touch/choicefinder.h"
#include "touch/datetimesteps.h"
#include "touch/dialogfit.h"
#include "touch/dialogplacement.h"
#include "touch/formarea.h"
#include "touch/latecalendar.h"
#include "touch/touchcheckbox.h"
#include "touch/touchcombobox.h"
#include "window/dialogwindow.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDateTimeEdit>
#include <QDialog>
#include <QFormLayout>

namespace {

void makeBoxesTouchable(const QDialog& oDialog)
{
    const QList<QComboBox*> oComboBoxes = oDialog.findChildren<QComboBox*>();
    for (QComboBox* pComboBox : oComboBoxes) {
        if (pComboBox->isEditable()) {
            ChoiceFinder::attachTo(pComboBox);
        }
        TouchComboBox::attachTo(pComboBox);
    }
    const QList<QCheckBox*> oCheckBoxes = oDialog.findChildren<QCheckBox*>();
    for (QCheckBox* pCheckBox : oCheckBoxes) {
        TouchCheckBox::attachTo(pCheckBox);
    }
}

// The buttons that step a field get the row below it.
void makeDateFieldsTouchable(const QDialog& oDialog, QFormLayout* pForm)
{
    const QList<QDateTimeEdit*> oFields = oDialog.findChildren<QDateTimeEdit*>();
    for (QDateTimeEdit* pField : oFields) {
        if (pField->calendarPopup()) {
            LateCalendar::attachTo(pField);
        }
        int nRow = 0;
        QFormLayout::ItemRole eRole = QFormLayout::FieldRole;
        pForm->getWidgetPosition(pField, &nRow, &eRole);
        pForm->insertRow(nRow + 1, static_cast<QWidget*>(nullptr), new DateTimeSteps(pField));
    }
}

} // namespace

void makeTouchable(QDialog* pDialog, const QFont& oFont)
{
    auto* pForm = pDialog->findChild<QFormLayout*>();
    auto* pRows = pForm ? qobject_cast<QBoxLayout*>(pForm->parent()) : nullptr;
    if (!pRows) {
        return;
    }
    DialogWindow* pWindow = DialogWindow::create(pDialog);
    makeBoxesTouchable(*pDialog);
    makeDateFieldsTouchable(*pDialog, pForm);
    FormArea* pArea = makeScrollable(pForm, pRows);
    fitDialog(pDialog, pArea, oFont);
    DialogPlacement::attachTo(pDialog, pWindow, pArea);
}
