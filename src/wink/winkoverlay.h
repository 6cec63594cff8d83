#pragma once

#include <QObject>

class QLabel;
class QWidget;
class QWindow;

/**
 * What the two overlays have in common. An instance belongs to one of them and keeps it above every other
 * window of the program while the keyboard stays with the window that had it.
 */
class WinkOverlay : public QObject
{
    Q_OBJECT

public:
    /** The time between two blink steps. */
    static constexpr int s_nBlinkMilliseconds = 1000;

    /**
     * Makes pWidget a window without frame that stays on top.
     * @param pHand keeps its place in the layout while it blinks
     */
    WinkOverlay(QWidget* pWidget, QLabel* pHand);

    /** Shows the device's address, as the platform client tells it now; an empty text if there is none. */
    static void showAddress(QLabel* pAddress);

    /** Shows the device's name as the platform client knows it, never as markup. */
    static void showDeviceName(QLabel* pDeviceName);

    /** Moves the widget, which has its size, to the middle of the first screen, if there is one. */
    static void centre(QWidget* pWidget);

    /**
     * One blink step: the hand disappears or comes back, and the address is read again.
     *
     * An overlay that is hidden while the hand is away comes back without it (required by the device's other
     * software).
     */
    static void blink(QLabel* pHand, QLabel* pAddress);

private slots:
    void onFocusWindowChanged(QWindow* pWindow);

private:
    void giveKeyboardBack();

    QWidget* m_pWidget;
};
