#pragma once

#include <QPoint>

class QEvent;

/**
 * Recognises taps: a press and a release within a few millimetres. It looks at the pointer only, not at what
 * scrolls.
 */
class Tap
{
public:
    /** Returns how far a finger may move in a tap, in pixels: 5 mm. A resolution that the screen claims to be
     * below 70 or above 300 dpi counts as that limit. */
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
