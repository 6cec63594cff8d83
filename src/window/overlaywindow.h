#pragma once

#include <QObject>

class QMouseEvent;
class QWidget;
class QWindow;

/**
 * The native window of an overlay: stays above panel, dialogs and lists on every platform, and takes neither
 * fingers nor keys. The widget keeps its flags; what the platforms need instead is here and nowhere else.
 */
class OverlayWindow : public QObject
{
    Q_OBJECT

public:
    /** Creates the native window of pWidget, a hidden widget without a parent, which owns this object. */
    explicit OverlayWindow(QWidget* pWidget);

    /** Shows the widget of an OverlayWindow, if it is hidden, and brings it to the top. An open list stays
     * open. */
    static void show(QWidget* pWidget);

    /** Keeps the overlay above the topmost window when it is shown or raised; passes fingers on to that
     * window. */
    bool eventFilter(QObject* pWatched, QEvent* pEvent) override;

private slots:
    void onFocusWindowChanged(QWindow* pWindow);
    void onParentVisibleChanged(bool bVisible);

private:
    void attach();
    void attachAgain();
    bool passOn(const QMouseEvent* pEvent) const;

    QWidget* m_pWidget;
};
