#include "panel/rowtaps.h"

#include "window/globalposition.h"

#include <QBoxLayout>
#include <QScrollArea>
#include <QScroller>
#include <QWindow>

namespace {

// Returns the rows of a column, those of its blocks one by one, from top to bottom.
QList<QWidget*> rowsOf(const QBoxLayout* pColumn)
{
    QList<QWidget*> oRows;
    for (int i = 0; i < pColumn->count(); ++i) {
        QWidget* pWidget = pColumn->itemAt(i)->widget();
        if (const auto* pBlock = qobject_cast<QBoxLayout*>(pWidget->layout())) {
            oRows += rowsOf(pBlock);
        } else {
            oRows.append(pWidget);
        }
    }
    return oRows;
}

} // namespace

RowTaps::RowTaps(QScrollArea* pArea, const QBoxLayout* pValues)
    : QObject(pArea), m_pArea(pArea), m_pValues(pValues)
{
    pArea->installEventFilter(this);
}

bool RowTaps::eventFilter(QObject* pWatched, QEvent* pEvent)
{
    if (pEvent->type() == QEvent::Show) { // the window may be another one than before
        m_pArea->window()->windowHandle()->installEventFilter(this);
    } else if (pEvent->type() == QEvent::MouseButtonPress && pWatched != m_pArea) {
        m_oTap.follow(pEvent);
        endLostDrag();
    }
    return false;
}

// Qt drops the release if the pressed row was hidden during a drag; the scroller would then ignore the next
// tap.
void RowTaps::endLostDrag()
{
    QScroller* pScroller = QScroller::scroller(m_pArea->viewport());
    if (pScroller->state() == QScroller::Dragging || pScroller->state() == QScroller::Pressed) {
        pScroller->stop();
    }
}

QObject* RowTaps::tappedRow(QObject* pWatched, const QEvent* pEvent)
{
    const bool bPressed = m_oTap.isPressed();
    const bool bTap = m_oTap.follow(pEvent);
    if (pWatched == m_pArea->widget()) {
        return bTap ? rowAt(globalPosition(*static_cast<const QMouseEvent*>(pEvent))) : nullptr;
    }
    return bTap || (pEvent->type() == QEvent::MouseButtonRelease && !bPressed) ? pWatched : nullptr;
}

// Returns the nearest row above or below, at any distance to the side; null outside the gaps between rows.
QWidget* RowTaps::rowAt(const QPoint& oGlobal) const
{
    QWidget* pNearest = nullptr;
    int nNearest = m_pValues->spacing() / 2 + 1;
    const QList<QWidget*> oRows = rowsOf(m_pValues);
    for (QWidget* pRow : oRows) {
        const int nY = pRow->mapFromGlobal(oGlobal).y();
        const int nDistance = qMax(qMax(-nY, nY - pRow->height() + 1), 0);
        if (pRow->isVisible() && nDistance < nNearest) {
            nNearest = nDistance;
            pNearest = pRow;
        }
    }
    return pNearest;
}
