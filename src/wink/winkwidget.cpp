#include "wink/winkwidget.h"

#include "window/visiblescreen.h"

namespace {

constexpr int s_nWinkLimitMilliseconds = 60000;
constexpr int s_nMaxPortraitWidth = 480;

void show(QWidget* pOverlay)
{
    if (pOverlay) {
        pOverlay->show();
    }
}

void hide(QWidget* pOverlay)
{
    if (pOverlay) {
        pOverlay->hide();
    }
}

} // namespace

bool EventGrabber::m_bInstanceFlag = false;
EventGrabber* EventGrabber::m_pInstance = nullptr;

EventGrabber* EventGrabber::getInstance()
{
    if (!m_bInstanceFlag) {
        m_pInstance = new EventGrabber;
        m_bInstanceFlag = true;
    }
    return m_pInstance;
}

EventGrabber::EventGrabber()
{
    m_oTimer.setSingleShot(true);
    m_oTimer.setInterval(s_nWinkLimitMilliseconds);
    connect(&m_oTimer, SIGNAL(timeout()), this, SLOT(onTimeOut()));
}

EventGrabber::~EventGrabber() = default;

bool EventGrabber::event(QEvent* pEvent)
{
    if (pEvent->type() == static_cast<QEvent::Type>(eWinkEvent_On)) {
        if (!m_pWinkHorWidget && !m_pWinkVerWidget) {
            createOverlay();
        }
        show(m_pWinkHorWidget);
        show(m_pWinkVerWidget);
        m_oTimer.start();
        return true;
    }
    if (pEvent->type() == static_cast<QEvent::Type>(eWinkEvent_Off)) {
        onTimeOut();
        m_oTimer.stop();
    }
    // Kept, see docs/compatibility.md
    return QObject::event(pEvent);
}

void EventGrabber::createOverlay()
{
    if (screenRect().width() > s_nMaxPortraitWidth) {
        m_pWinkHorWidget = new WinkHorWidget(nullptr);
    } else {
        m_pWinkVerWidget = new WinkVerWidget(nullptr);
    }
}

void EventGrabber::onTimeOut()
{
    hide(m_pWinkHorWidget);
    hide(m_pWinkVerWidget);
}
