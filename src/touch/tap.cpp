#include "touch/tap.h"

#include "window/globalposition.h"
#include "window/visiblescreen.h"

namespace {

constexpr qreal s_nTapMillimetres = 5;
constexpr qreal s_nMillimetresPerInch = 25.4;
constexpr qreal s_nMinimumDpi = 70;
constexpr qreal s_nMaximumDpi = 300;

} // namespace

int Tap::distance()
{
    const qreal nDpi = qBound(s_nMinimumDpi, screenDotsPerInch(), s_nMaximumDpi);
    return qRound(s_nTapMillimetres / s_nMillimetresPerInch * nDpi);
}

bool Tap::follow(const QEvent* pEvent)
{
    if (pEvent->type() == QEvent::MouseButtonPress || pEvent->type() == QEvent::MouseButtonDblClick) {
        m_oPress = globalPosition(*static_cast<const QMouseEvent*>(pEvent));
        m_bPressed = true;
        return false;
    }
    if (pEvent->type() != QEvent::MouseButtonRelease || !m_bPressed) {
        return false;
    }
    m_bPressed = false;
    const QPoint oMoved = globalPosition(*static_cast<const QMouseEvent*>(pEvent)) - m_oPress;
    return oMoved.manhattanLength() <= distance();
}
