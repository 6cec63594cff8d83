#ifndef DEVICE_TOUCHSCREEN_H
#define DEVICE_TOUCHSCREEN_H

#include <string>

/**
 * A touch screen that the kernel's uinput makes, and the fingers on it. The kernel passes its events on as
 * those of a real one.
 */
class TouchScreen
{
public:
    /** Creates the input device: nWidth by nHeight pixels, with one point of touch or with two. */
    TouchScreen(int nWidth, int nHeight, bool bMulti);
    ~TouchScreen();
    TouchScreen(const TouchScreen&) = delete;
    TouchScreen& operator=(const TouchScreen&) = delete;

    /** Returns the path of the event device, empty if it could not be created. */
    std::string path() const;

    /** Puts finger 0 or 1 on the screen, or moves it there. */
    void press(int nFinger, int nX, int nY);

    /** Lifts the finger. */
    void lift(int nFinger);

    /**
     * Plays steps that are separated by blanks: "F:X,Y" presses or moves finger F, "F:up" lifts it, a number
     * waits for that many milliseconds.
     */
    void play(const std::string& strSteps);

private:
    void emit(int nType, int nCode, int nValue) const;
    void setAxis(int nCode, int nMaximum) const;

    int m_nDevice;
    bool m_bMulti;
    bool m_bDown[2] = {};
    int m_nContacts = 0;
    int m_nX[2] = {};
    int m_nY[2] = {};
};

#endif
