#include "panel/dialogplacement.h"

#include "panel/panelinfo.h"

#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QEvent>
#include <QFormLayout>
#include <QInputMethod>
#include <QScreen>
#include <QStyledItemDelegate>

namespace {

constexpr int s_nFieldHeight = 48;
constexpr int s_nMinimumFieldHeight = 28;
constexpr int s_nFieldHeightStep = 4;

// A list that scrolls in place of a menu as high as the screen.
constexpr char s_szListSheet[] = "QComboBox { combobox-popup: 0; }"
                                 "QComboBox QAbstractItemView::item { min-height: 40px; }"
                                 "QComboBox QScrollBar:vertical { width: 32px; }";

bool isField(const QWidget* pWidget)
{
    return pWidget->focusPolicy() != Qt::NoFocus && pWidget->parentWidget()->focusPolicy() == Qt::NoFocus;
}

} // namespace

DialogPlacement::DialogPlacement(QDialog* pDialog, const PanelInfo& oPanelInfo)
    : QObject(pDialog), m_pDialog(pDialog)
{
    QFont oFont = pDialog->font();
    oFont.setPixelSize(oPanelInfo.infoTextFontSize);
    pDialog->setFont(oFont);
    fitLists();
    fitFields(oPanelInfo);
    pDialog->installEventFilter(this);
    QInputMethod* pInputMethod = QGuiApplication::inputMethod();
    connect(pInputMethod, SIGNAL(keyboardRectangleChanged()), this, SLOT(place()));
    connect(pInputMethod, SIGNAL(visibleChanged()), this, SLOT(place()));
    connect(qApp, SIGNAL(focusChanged(QWidget*, QWidget*)), this, SLOT(place()));
}

void DialogPlacement::fitFields(const PanelInfo& oPanelInfo)
{
    const QSize oScreen(oPanelInfo.screenWidth, oPanelInfo.screenHeight);
    const QSize oInitial = m_pDialog->size();
    if (m_pDialog->sizeHint().width() > oScreen.width()) {
        wrapRows();
    }
    QSize oSize;
    int nHeight = s_nFieldHeight;
    do {
        setFieldHeight(nHeight);
        oSize = oInitial.expandedTo(m_pDialog->sizeHint());
        nHeight -= s_nFieldHeightStep;
    } while (oSize.height() > oScreen.height() && nHeight >= s_nMinimumFieldHeight);
    m_pDialog->resize(oSize.boundedTo(oScreen));
}

void DialogPlacement::fitLists()
{
    const QList<QComboBox*> oComboBoxes = m_pDialog->findChildren<QComboBox*>();
    for (QComboBox* pComboBox : oComboBoxes) {
        pComboBox->setStyleSheet(s_szListSheet);
        pComboBox->setItemDelegate(new QStyledItemDelegate(pComboBox)); // the only one that obeys the sheet
    }
}

void DialogPlacement::wrapRows()
{
    const QList<QFormLayout*> oForms = m_pDialog->findChildren<QFormLayout*>();
    for (QFormLayout* pForm : oForms) {
        pForm->setRowWrapPolicy(QFormLayout::WrapAllRows);
    }
}

void DialogPlacement::setFieldHeight(int nHeight)
{
    const QList<QWidget*> oWidgets = m_pDialog->findChildren<QWidget*>();
    for (QWidget* pWidget : oWidgets) {
        if (isField(pWidget)) {
            pWidget->setMinimumHeight(nHeight);
        }
    }
    for (const QWidget* pWidget : oWidgets) {
        if (pWidget->layout()) { // else the size hint would be that of the heights before
            pWidget->layout()->activate();
        }
    }
}

bool DialogPlacement::eventFilter(QObject* pWatched, QEvent* pEvent)
{
    if (pEvent->type() == QEvent::Show || pEvent->type() == QEvent::Resize) {
        place();
    }
    return QObject::eventFilter(pWatched, pEvent);
}

void DialogPlacement::place()
{
    const QInputMethod* pInputMethod = QGuiApplication::inputMethod();
    QRect oVisible = QGuiApplication::primaryScreen()->geometry();
    const QRect oKeyboard = pInputMethod->keyboardRectangle().toAlignedRect();
    if (pInputMethod->isVisible() && !oKeyboard.isEmpty()) {
        oVisible.setBottom(oKeyboard.top() - 1);
    }
    const int nLeft = oVisible.left() + (oVisible.width() - m_pDialog->width()) / 2;
    m_pDialog->move(nLeft, topOf(oVisible));
}

// A dialog higher than what is visible is moved like a page, so that the field with the focus can be seen.
int DialogPlacement::topOf(const QRect& oVisible) const
{
    const int nMiddle = oVisible.top() + (oVisible.height() - m_pDialog->height()) / 2;
    const QWidget* pFocus = m_pDialog->focusWidget();
    if (m_pDialog->height() <= oVisible.height() || !pFocus) {
        return nMiddle;
    }
    const int nFieldMiddle = pFocus->mapTo(m_pDialog, pFocus->rect().center()).y();
    const int nWanted = oVisible.center().y() - nFieldMiddle;
    return qBound(oVisible.bottom() + 1 - m_pDialog->height(), nWanted, oVisible.top());
}
