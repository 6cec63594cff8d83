#pragma once

#include <QObject>
#include <QSize>

class QDialog;
class QRect;

/**
 * Puts a dialog where it belongs on the screen, and keeps keys from it while a list or calendar is open.
 *
 * A client of a Wayland compositor cannot place its windows, and some compositors raise the panel above a
 * dialog when a finger touches it. There the dialog's window covers the whole screen and is transparent
 * around the dialog's frame.
 */
class DialogWindow : public QObject
{
    Q_OBJECT

public:
    /** @param pDialog a dialog that is not shown yet; its layout has no margins */
    explicit DialogWindow(QDialog* pDialog);

    /** Moves and resizes the dialog; oRect is in pixels of the screen. */
    void setRect(const QRect& oRect);

    /** Returns the size in pixels of what is seen of the dialog. */
    QSize size() const;

    /** Returns the size in pixels that the dialog's layout asks for. */
    QSize sizeHint() const;

    /** Prepares the native window to be shown; passes keys on to an open list or calendar. */
    bool eventFilter(QObject* pWatched, QEvent* pEvent) override;

private slots:
    void onShown();
    void onAnswerDue();

private:
    void prepare();
    static bool passOn(QEvent* pEvent);

    QDialog* m_pDialog;
};
