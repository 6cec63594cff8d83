#pragma once

#include <QRect>

/** Returns the place and size in pixels of Qt's default screen, which everything is shown on; null if there
 * is none. */
QRect screenRect();

/** Returns what an on-screen keyboard leaves of screenRect(). */
QRect visibleScreenRect();

/** Returns the physical resolution of that screen; 0 if there is none. */
qreal screenDotsPerInch();
