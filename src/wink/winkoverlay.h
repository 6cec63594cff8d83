#pragma once

#include <QObject>

class QLabel;
class QWidget;

/**
 * What the two overlays share. An instance belongs to one overlay, keeps it above all other windows, leaves
 * the keyboard to the window that had it, and refuses to close.
 */
class WinkOverlay : public QObject
{
    Q_OBJECT

public:
    /** The time between two blink steps. */
    static constexpr int s_nBlinkMilliseconds = 1000;

    /**
     * Makes pWidget a frameless window that stays on top.
     * @param pHand keeps its place in the layout while it is hidden
     */
    WinkOverlay(QWidget* pWidget, QLabel* pHand);

    /** Refuses to close the overlay: the runtime alone ends a wink. */
    bool eventFilter(QObject* pWatched, QEvent* pEvent) override;

    /** Shows the best interface address that the platform client has; an empty text if there is none. */
    static void showAddress(QLabel* pAddress);

    /** Shows the device name that the platform client has. */
    static void showDeviceName(QLabel* pDeviceName);

    /** Moves the widget to the middle of the first screen, if there is one. */
    static void centre(QWidget* pWidget);

    /** One blink step: hides or shows the hand, and reads the address again. */
    static void blink(QLabel* pHand, QLabel* pAddress);
};
