#include "touch/dialogplacement.h"

#include "touch/formarea.h"
#include "touch/touchcheckbox.h"
#include "touch/touchcombobox.h"
#include "touch/touchsheet.h"
#include "window/dialogwindow.h"
#include "window/visiblescreen.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDateTimeEdit>
#include <QDialog>
#include <QEvent>
#include <QFormLayout>
#include <QInputMethod>

namespace {

constexpr int s_nGrid = 6;        // all distances are multiples of it
constexpr int s_nFieldFrame = 16; // border and padding, as in the style sheet
constexpr int s_aTargets[] = {48, 40};

} // namespace

DialogPlacement::DialogPlacement(QDialog* pDialog, const QFont& oFont)
    : QObject(pDialog), m_pDialog(pDialog), m_pWindow(DialogWindow::create(pDialog)),
      m_pForm(pDialog->findChild<QFormLayout*>(QStringLiteral("formLayout"))),
      m_pButtons(pDialog->findChild<QBoxLayout*>(QStringLiteral("horizontalLayout")))
{
    const QList<QComboBox*> oComboBoxes = pDialog->findChildren<QComboBox*>();
    for (QComboBox* pComboBox : oComboBoxes) {
        new TouchComboBox(pComboBox);
    }
    const QList<QCheckBox*> oCheckBoxes = pDialog->findChildren<QCheckBox*>();
    for (QCheckBox* pCheckBox : oCheckBoxes) {
        new TouchCheckBox(pCheckBox);
    }
    makeScrollable();
    fitButtons();
    fitTargets(oFont);
    pDialog->installEventFilter(this);
    m_pArea->widget()->installEventFilter(this);
    QInputMethod* pInputMethod = QGuiApplication::inputMethod();
    connect(pInputMethod, SIGNAL(keyboardRectangleChanged()), this, SLOT(place()));
    connect(pInputMethod, SIGNAL(visibleChanged()), this, SLOT(place()));
    connect(qApp, SIGNAL(focusChanged(QWidget*, QWidget*)), this, SLOT(place()));
}

void DialogPlacement::makeScrollable()
{
    auto* pRows = static_cast<QBoxLayout*>(m_pForm->parent());
    const int nPosition = pRows->indexOf(m_pForm);
    pRows->removeItem(m_pForm);
    m_pForm->setParent(nullptr);
    m_pForm->setContentsMargins(0, 0, 0, 0);
    m_pForm->setHorizontalSpacing(s_nGrid * 2);
    m_pForm->setVerticalSpacing(s_nGrid);
    m_pForm->setRowWrapPolicy(QFormLayout::DontWrapRows);
    m_pForm->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    while (QWidget* pBelow = pRows->itemAt(nPosition)->widget()) { // stands under the fields then
        pRows->removeWidget(pBelow);
        m_pForm->setWidget(m_pForm->rowCount(), QFormLayout::FieldRole, pBelow);
    }
    m_pArea = new FormArea(m_pForm);
    pRows->insertWidget(nPosition, m_pArea);
    pRows->setSpacing(s_nGrid);
}

// Buttons share the whole width.
void DialogPlacement::fitButtons()
{
    m_pButtons->setContentsMargins(0, 0, 0, 0);
    m_pButtons->setSpacing(s_nGrid);
    for (int i = 0; i < m_pButtons->count(); ++i) {
        if (QSpacerItem* pSpacer = m_pButtons->itemAt(i)->spacerItem()) {
            pSpacer->changeSize(0, 0, QSizePolicy::Fixed, QSizePolicy::Fixed);
        }
        if (QWidget* pButton = m_pButtons->itemAt(i)->widget()) {
            pButton->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
        }
    }
}

void DialogPlacement::fitTargets(const QFont& oFont)
{
    const QSize oInitial = m_pDialog->size();
    const QSize oScreen = visibleScreenRect().size();
    for (const int nTarget : s_aTargets) {
        m_pDialog->setStyleSheet(touchSheet(nTarget, oFont));
        refreshHints();
        fitDateFields(nTarget);
        refreshHints();
        if (m_pDialog->minimumSizeHint().width() > oScreen.width()) {
            wrapRows();
            refreshHints();
        }
        m_nOutside = m_pDialog->sizeHint().height() - m_pArea->sizeHint().height();
        m_pDialog->resize(wantedSize().expandedTo(oInitial).boundedTo(oScreen));
        if (wantedSize().height() <= oScreen.height()) {
            break;
        }
    }
}

// A check box gets a row of its own, as wide as the form: all of it can be tapped.
void DialogPlacement::wrapRows()
{
    m_pForm->setRowWrapPolicy(QFormLayout::WrapAllRows);
    for (int i = 0; i < m_pForm->rowCount(); ++i) {
        QLayoutItem* pLabel = m_pForm->itemAt(i, QFormLayout::LabelRole);
        if (pLabel && qobject_cast<QCheckBox*>(pLabel->widget())) {
            const QFormLayout::TakeRowResult oRow = m_pForm->takeRow(i);
            m_pForm->insertRow(i, oRow.labelItem->widget());
            m_pForm->insertRow(i + 1, oRow.fieldItem->widget());
            delete oRow.labelItem;
            delete oRow.fieldItem;
        }
    }
}

// Their own hint leaves no room for the arrow beside the text.
void DialogPlacement::fitDateFields(int nTarget)
{
    const QList<QDateTimeEdit*> oFields = m_pDialog->findChildren<QDateTimeEdit*>();
    for (QDateTimeEdit* pField : oFields) {
        const int nText = pField->fontMetrics().horizontalAdvance(pField->text() + ' ');
        pField->setMinimumWidth(nText + nTarget + s_nFieldFrame);
    }
}

// Otherwise the hints would be those of the look before, until the dialog is shown.
void DialogPlacement::refreshHints()
{
    const QList<QWidget*> oWidgets = m_pDialog->findChildren<QWidget*>();
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

bool DialogPlacement::eventFilter(QObject* pWatched, QEvent* pEvent)
{
    if (pEvent->type() == QEvent::Show) {
        place();
    } else if (pEvent->type() == QEvent::LayoutRequest && pWatched != m_pDialog) {
        QMetaObject::invokeMethod(this, "place", Qt::QueuedConnection); // the layout has its new size by then
    }
    return QObject::eventFilter(pWatched, pEvent);
}

// Returns the size without scrolling, no narrower than the dialog is.
QSize DialogPlacement::wantedSize() const
{
    return {qMax(m_pWindow->sizeHint().width(), m_pWindow->size().width()),
            m_nOutside + m_pArea->sizeHint().height()};
}

void DialogPlacement::place()
{
    const QRect oVisible = visibleScreenRect();
    if (oVisible.isEmpty() || !m_pDialog->isVisible()) { // the focus also moves while the dialog is deleted
        return;
    }
    const QSize oSize = wantedSize().boundedTo(oVisible.size());
    const int nLeft = oVisible.left() + (oVisible.width() - oSize.width()) / 2;
    const int nTop = oVisible.top() + (oVisible.height() - oSize.height()) / 2;
    m_pWindow->setRect(QRect(QPoint(nLeft, nTop), oSize));
    m_pArea->showFocus();
}
