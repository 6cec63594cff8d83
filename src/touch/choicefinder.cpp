#include "touch/choicefinder.h"

#include "touch/touchlist.h"
#include "window/floatingwindow.h"
#include "window/visiblescreen.h"

#include <QComboBox>
#include <QFocusEvent>
#include <QGuiApplication>
#include <QInputMethod>
#include <QLineEdit>
#include <QListView>

namespace {

constexpr int s_nMaxRows = 6;
constexpr int s_nEnoughRows = 3;

} // namespace

void ChoiceFinder::attachTo(QComboBox* pComboBox)
{
    new ChoiceFinder(pComboBox);
}

ChoiceFinder::ChoiceFinder(QComboBox* pComboBox)
    : QObject(pComboBox), m_pComboBox(pComboBox), m_pList(new QListView(pComboBox->window()))
{
    m_oFound.setSourceModel(pComboBox->model());
    m_oFound.setFilterCaseSensitivity(Qt::CaseInsensitive);
    m_pList->setObjectName(QStringLiteral("choices"));
    makeFloating(m_pList);
    m_pList->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_pList->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_pList->setModel(&m_oFound);
    TouchList::attachTo(m_pList);
    // The frame buffer may deliver the next key while the list hides to move.
    m_oTyped.setSingleShot(true);
    connect(pComboBox->lineEdit(), SIGNAL(textEdited(QString)), &m_oTyped, SLOT(start()));
    connect(&m_oTyped, SIGNAL(timeout()), this, SLOT(find()));
    connect(m_pList, SIGNAL(clicked(QModelIndex)), this, SLOT(choose(QModelIndex)));
    connect(QGuiApplication::inputMethod(), SIGNAL(keyboardRectangleChanged()), this, SLOT(place()),
            Qt::QueuedConnection); // after the dialog, which on Wayland moves inside its window
    pComboBox->installEventFilter(this);
    pComboBox->lineEdit()->installEventFilter(this);
    pComboBox->window()->installEventFilter(this);
}

void ChoiceFinder::find()
{
    const QString strTyped = m_pComboBox->lineEdit()->text();
    m_oFound.setFilterFixedString(strTyped);
    m_pList->setCurrentIndex({});
    m_pList->scrollToTop();
    if (strTyped.isEmpty() || m_oFound.rowCount() == 0) {
        hide();
    } else {
        show();
    }
}

void ChoiceFinder::choose(const QModelIndex& oIndex)
{
    hide();
    m_pComboBox->setCurrentIndex(m_oFound.mapToSource(oIndex).row());
}

// Returns the larger part of the visible screen above or below the field, below if that is enough.
QRect ChoiceFinder::freeRect() const
{
    const QRect oVisible = visibleScreenRect();
    const QRect oField(m_pComboBox->mapToGlobal(QPoint()), m_pComboBox->size());
    const QRect oAbove(oField.left(), oVisible.top(), oField.width(), oField.top() - oVisible.top());
    const QRect oBelow(oField.left(), oField.bottom() + 1, oField.width(),
                       oVisible.bottom() - oField.bottom());
    const bool bEnough = oBelow.height() >= s_nEnoughRows * m_pList->sizeHintForRow(0);
    return bEnough || oBelow.height() >= oAbove.height() ? oBelow : oAbove;
}

void ChoiceFinder::place()
{
    if (m_pList->isVisible()) {
        show();
    }
}

void ChoiceFinder::hide()
{
    m_oTyped.stop();
    m_pList->hide();
}

void ChoiceFinder::show()
{
    m_pList->ensurePolished();
    const QRect oFree = freeRect();
    const int nRows = qMin(m_oFound.rowCount(), s_nMaxRows);
    const int nWanted = nRows * m_pList->sizeHintForRow(0) + 2 * m_pList->frameWidth();
    const int nHeight = qMin(nWanted, oFree.height());
    const int nField = m_pComboBox->mapToGlobal(QPoint()).y();
    const int nTop = oFree.top() < nField ? oFree.bottom() + 1 - nHeight : oFree.top();
    showFloating(m_pList, QRect(oFree.left(), nTop, oFree.width(), nHeight));
}

bool ChoiceFinder::eventFilter(QObject* pWatched, QEvent* pEvent)
{
    switch (pEvent->type()) {
    case QEvent::FocusIn:
        m_bTapped = static_cast<const QFocusEvent*>(pEvent)->reason() == Qt::MouseFocusReason;
        break;
    case QEvent::MouseButtonRelease:
        if (m_bTapped && pWatched == m_pComboBox->lineEdit()) {
            m_bTapped = false;
            QMetaObject::invokeMethod(pWatched, "selectAll",
                                      Qt::QueuedConnection); // after it has placed the cursor
        }
        break;
    case QEvent::FocusOut:
    case QEvent::Hide:
    case QEvent::MouseButtonPress:
        hide();
        break;
    case QEvent::Move:
    case QEvent::Resize:
        place();
        break;
    default:
        break;
    }
    return QObject::eventFilter(pWatched, pEvent);
}
