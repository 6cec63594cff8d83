#pragma once

#include <QObject>

class QWidget;

/**
 * Hides a list or calendar that is to be closed.
 *
 * Qt 6 destroys the native window of what is closed, and its frame buffer plug-ins never paint the one that
 * comes next. Seen with Qt 6.4.2: without this class, the row "vnc" of tst_display fails.
 */
class PopupHider : public QObject
{
    Q_OBJECT

public:
    /** Watches pPopup, which owns the watcher; does nothing if it is watched already. */
    static void attachTo(QWidget* pPopup);

    /** Hides the popup in place of closing it; see QObject::eventFilter. */
    bool eventFilter(QObject* pWatched, QEvent* pEvent) override;

private:
    explicit PopupHider(QWidget* pPopup);
};
