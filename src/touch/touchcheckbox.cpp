#include "touch/touchcheckbox.h"

#include <QCheckBox>
#include <QEvent>

void TouchCheckBox::attachTo(QCheckBox* pCheckBox)
{
    new TouchCheckBox(pCheckBox);
}

TouchCheckBox::TouchCheckBox(QCheckBox* pCheckBox) : QObject(pCheckBox), m_pCheckBox(pCheckBox)
{
    pCheckBox->installEventFilter(this);
}

// The check box itself takes only what hits its text.
bool TouchCheckBox::eventFilter(QObject* pWatched, QEvent* pEvent)
{
    const bool bTap = m_oTap.follow(pEvent);
    switch (pEvent->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
        m_pCheckBox->setDown(m_pCheckBox->isEnabled());
        return true;
    case QEvent::MouseMove:
        return true;
    case QEvent::MouseButtonRelease:
        m_pCheckBox->setDown(false);
        if (bTap) {
            m_pCheckBox->click();
        }
        return true;
    default:
        return QObject::eventFilter(pWatched, pEvent);
    }
}
