#include "window/popupguard.h"

#include <QApplication>
#include <QEvent>
#include <QWidget>

PopupGuard::PopupGuard()
{
    if (QWidget* pPopup = QApplication::activePopupWidget()) {
        pPopup->installEventFilter(this);
    }
}

bool PopupGuard::eventFilter(QObject* pWatched, QEvent* pEvent)
{
    if (pEvent->type() == QEvent::Close) {
        pEvent->ignore();
        return true;
    }
    return QObject::eventFilter(pWatched, pEvent);
}
