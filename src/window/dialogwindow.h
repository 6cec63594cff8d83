#pragma once

#include <QObject>
#include <QSize>

class QDialog;
class QRect;

/** Puts a dialog where it belongs on the screen, and keeps keys from it while a list or calendar is open. */
class DialogWindow : public QObject
{
    Q_OBJECT

public:
    /** Returns the window that a dialog needs on this platform; the dialog, which is not shown yet and whose
     * layout has no margins, owns it. */
    static DialogWindow* create(QDialog* pDialog);

    /** Moves and resizes the dialog; oRect is in pixels of the screen. */
    virtual void setRect(const QRect& oRect);

    /** Returns the size in pixels of what is seen of the dialog. */
    virtual QSize size() const;

    /** Returns the size in pixels that the dialog's layout asks for. */
    virtual QSize sizeHint() const;

    /** Passes keys on to an open list or calendar; see QObject::eventFilter. */
    bool eventFilter(QObject* pWatched, QEvent* pEvent) override;

protected:
    /** Watches the dialog, and makes it modal. */
    explicit DialogWindow(QDialog* pDialog);

    /** Called when the dialog has a native window that is about to be shown. */
    virtual void prepare();

    /** Returns the dialog. */
    QDialog* dialog() const { return m_pDialog; }

private:
    static bool passOn(QEvent* pEvent);

    QDialog* m_pDialog;
};
