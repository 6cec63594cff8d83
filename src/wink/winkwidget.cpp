#include "wink/winkwidget.h"

namespace {

constexpr int s_nWinkLimitMilliseconds = 60000;

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
}

bool EventGrabber::event(QEvent* pEvent)
{
    if (pEvent->type() == static_cast<QEvent::Type>(eWinkEvent_On)) {
        m_oTimer.start();
        return true;
    }
    if (pEvent->type() == static_cast<QEvent::Type>(eWinkEvent_Off)) {
        m_oTimer.stop();
    }
    return QObject::event(pEvent);
}
