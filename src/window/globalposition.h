#pragma once

#include <QMouseEvent>

/** Returns where on the desktop a mouse event happens, in pixels. */
inline QPoint globalPosition(const QMouseEvent& oEvent)
{
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0) // renamed
    return oEvent.globalPos();
#else
    return oEvent.globalPosition().toPoint();
#endif
}
