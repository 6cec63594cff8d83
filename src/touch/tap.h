#pragma once

#include <QPoint>

class QEvent;

/**
 * Recognises the taps of a finger among all else that it does: a tap is a press and a release within a few
 * millimetres.
 *
 * It looks at the pointer only, so it does not matter what scrolls, or whether anything does.
 */
class Tap
{
public:
    /** Returns how far a finger may move in a tap, in pixels: 5 mm, with a physical resolution of the default
     * screen between 70 and 300 dpi, whatever the screen claims. */
    static int distance();

    /**
     * Takes the next event of a widget, or of several that overlap; all but mouse events are ignored.
     * @return whether the event is the release that completes a tap
     */
    bool follow(const QEvent* pEvent);

    /** Returns whether the finger was pressed and not released yet. */
    bool isPressed() const { return m_bPressed; }

private:
    QPoint m_oPress; // on the screen
    bool m_bPressed = false;
};
