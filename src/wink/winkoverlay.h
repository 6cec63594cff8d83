#pragma once

#include <QObject>

class OverlayWindow;
class QLabel;
class QWidget;

/**
 * What the two overlays share: the labels of one of them, and its window, which stays above all others,
 * leaves the keyboard to the window that had it, and refuses to close.
 */
class WinkOverlay : public QObject
{
    Q_OBJECT

public:
    /** The time between two blink steps. */
    static constexpr int s_nBlinkMilliseconds = 1000;

    /**
     * Makes pWidget, which owns this object, a frameless window in the middle of the screen that stays on
     * top. Shows the address and the device name that the platform client has.
     * @param pHand keeps its place in the layout while it is hidden
     */
    WinkOverlay(QWidget* pWidget, QLabel* pHand, QLabel* pDeviceName, QLabel* pAddress);

    /** Refuses to close the overlay: the runtime alone ends a wink. */
    bool eventFilter(QObject* pWatched, QEvent* pEvent) override;

    /** Shows the overlay above everything else, an open list too, or hides it. */
    void setVisible(bool bVisible);

    /** One blink step: hides or shows the hand, reads the address again, and brings the overlay back to the
     * top. */
    void blink();

private:
    void showAddress();
    void centre();

    QWidget* m_pWidget;
    OverlayWindow* m_pWindow;
    QLabel* m_pHand;
    QLabel* m_pAddress;
};
