#pragma once

#include <QFontMetricsF>
#include <QtMath>

/** Returns how high a line of text is in pixels, with all versions of Qt: newer ones round where older ones
 * round up. */
inline int lineHeight(const QFont& oFont)
{
    const QFontMetricsF oMetrics(oFont);
    return qCeil(oMetrics.ascent()) + qCeil(oMetrics.descent());
}
