#pragma once

#include <QObject>

/** Prevents the open list or calendar from closing while the guard lives: Qt closes it when it shows a
 * window. */
class PopupGuard : public QObject
{
    Q_OBJECT

public:
    /** Guards the list or calendar that is open now, if any. */
    PopupGuard();

    /** Refuses to close what is guarded; see QObject::eventFilter. */
    bool eventFilter(QObject* pWatched, QEvent* pEvent) override;
};
