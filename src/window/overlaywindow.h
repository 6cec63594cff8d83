#pragma once

#include <QObject>
#include <QPointer>

class QMouseEvent;
class QWidget;
class QWindow;

/**
 * The native window of an overlay: stays above panel, dialogs and lists on every platform, and accepts no
 * input. The widget keeps its own window flags.
 */
class OverlayWindow : public QObject
{
    Q_OBJECT

public:
    /** Creates the native window of pWidget, a hidden widget without a parent, which owns this object. */
    explicit OverlayWindow(QWidget* pWidget);

    /** Shows the widget on top, or brings it back there. An open list stays open. */
    void show();

    /** Passes pointer events on to what is below; see QObject::eventFilter. */
    bool eventFilter(QObject* pWatched, QEvent* pEvent) override;

public slots:
    /** Brings the widget back to the top if it is visible. */
    void restack();

private slots:
    void onParentVisibleChanged(bool bVisible);

private:
    void putAbove(QWindow* pBelow);
    QWindow* windowBelow(const QPoint& oGlobal) const;
    bool passOn(const QMouseEvent& oEvent);
    bool returnToBelow(const QMouseEvent& oEvent);

    QWidget* m_pWidget;
    QPointer<QWindow> m_pBelow;   // gets what reaches the overlay
    QPointer<QWidget> m_pPressed; // a widget of a scroller's, which sent the press
};
