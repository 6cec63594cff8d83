#pragma once

#include <QObject>

/** Keeps the open list or calendar, if there is one, from being closed as long as the guard lives: Qt closes
 * it when a window is shown. */
class PopupGuard : public QObject
{
    Q_OBJECT

public:
    /** Guards the list or calendar that is open now. */
    PopupGuard();

    /** Refuses to close what is guarded; see QObject::eventFilter. */
    bool eventFilter(QObject* pWatched, QEvent* pEvent) override;
};
