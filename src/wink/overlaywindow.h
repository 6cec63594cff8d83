#pragma once

#include <QObject>

class QWidget;
class QWindow;

/**
 * The native window of an overlay. Keeps it above all other windows of the program, on most platforms also
 * above those of other programs, and passes fingers and keys on to what lies below. What a platform needs for
 * it is here and nowhere else; the widget keeps its flags.
 */
class OverlayWindow : public QObject
{
    Q_OBJECT

public:
    /** Creates the native window of pWidget, a hidden widget without a parent, which owns this object. */
    explicit OverlayWindow(QWidget* pWidget);

    /** Puts the native window above all others when the widget is shown or raised; never true. */
    bool eventFilter(QObject* pWatched, QEvent* pEvent) override;

private slots:
    void onFocusWindowChanged(QWindow* pWindow);
    void onParentVisibleChanged(bool bVisible);

private:
    void attach();
    void attachAgain();
    void giveKeyboardBack();

    QWidget* m_pWidget;
};
