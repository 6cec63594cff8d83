#pragma once

#include <QObject>
#include <QSize>

class QDialog;
class QRect;

/** The native window of a dialog: places it, and passes keys to an open list or calendar. */
class DialogWindow : public QObject
{
    Q_OBJECT

public:
    /** Creates the window that a dialog needs on this platform. The dialog owns it, is not shown yet, and its
     * layout has no margins. */
    static DialogWindow* create(QDialog* pDialog);

    /** Moves and resizes the dialog; oRect is in pixels of the screen. */
    virtual void setRect(const QRect& oRect);

    /** Returns the size in pixels of the visible part of the dialog. */
    virtual QSize size() const;

    /** Returns the size in pixels that the dialog's layout asks for. */
    virtual QSize sizeHint() const;

    /** Passes keys on to an open list or calendar; see QObject::eventFilter. */
    bool eventFilter(QObject* pWatched, QEvent* pEvent) override;

protected:
    /** Watches the dialog and makes it modal. */
    explicit DialogWindow(QDialog* pDialog);

    /** Called when the dialog's native window exists and is about to be shown. */
    virtual void prepare();

    /** Returns the dialog. */
    QDialog* dialog() const { return m_pDialog; }

private slots:
    void onVisibleChanged(bool bVisible);

private:
    static bool passOn(QEvent* pEvent);

    QDialog* m_pDialog;
};
