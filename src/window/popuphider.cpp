#include "window/popuphider.h"

#include <QEvent>
#include <QWidget>

void PopupHider::attachTo(QWidget* pPopup)
{
    if (!pPopup->findChild<PopupHider*>(QString(), Qt::FindDirectChildrenOnly)) {
        new PopupHider(pPopup);
    }
}

PopupHider::PopupHider(QWidget* pPopup) : QObject(pPopup)
{
    pPopup->installEventFilter(this);
}

bool PopupHider::eventFilter(QObject* pWatched, QEvent* pEvent)
{
    if (pEvent->type() == QEvent::Close) {
        pEvent->ignore();
        static_cast<QWidget*>(pWatched)->hide();
        return true;
    }
    return QObject::eventFilter(pWatched, pEvent);
}
