#include "touch/touchlist.h"

#include "touch/fingerscroll.h"

#include <QAbstractItemView>
#include <QEvent>
#include <QScroller>
#include <QStyledItemDelegate>

void TouchList::attachTo(QAbstractItemView* pView)
{
    new TouchList(pView);
}

TouchList::TouchList(QAbstractItemView* pView) : QObject(pView), m_pView(pView)
{
    pView->setItemDelegate(new QStyledItemDelegate(pView)); // a combo box's own ignores the style sheet
    letFingerScroll(pView);
    pView->viewport()->installEventFilter(this); // before that of the pop-up, which chooses on any release
}

bool TouchList::eventFilter(QObject* pWatched, QEvent* pEvent)
{
    switch (pEvent->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
        m_oCurrent = m_pView->currentIndex();
        m_oTap.follow(pEvent);
        return false;
    case QEvent::MouseMove: // would mark the row below the finger
        return true;
    case QEvent::MouseButtonRelease:
        return filterRelease(pEvent);
    case QEvent::Hide: // a list closed in full swing would open so
        QScroller::scroller(m_pView->viewport())->stop();
        return false;
    default:
        return QObject::eventFilter(pWatched, pEvent);
    }
}

bool TouchList::filterRelease(const QEvent* pEvent)
{
    if (m_oTap.follow(pEvent)) {
        return false;
    }
    if (m_oCurrent.isValid()) {
        m_pView->setCurrentIndex(m_oCurrent);
    }
    return true;
}
