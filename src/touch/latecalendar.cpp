#include "touch/latecalendar.h"

#include "touch/touchcalendar.h"

#include <QDateTimeEdit>
#include <QEvent>

void LateCalendar::attachTo(QDateTimeEdit* pEdit)
{
    new LateCalendar(pEdit);
}

LateCalendar::LateCalendar(QDateTimeEdit* pEdit) : QObject(pEdit), m_pEdit(pEdit)
{
    pEdit->installEventFilter(this);
}

bool LateCalendar::eventFilter(QObject* pWatched, QEvent* pEvent)
{
    if (pEvent->type() == QEvent::MouseButtonPress) {
        m_pEdit->removeEventFilter(this);
        m_pEdit->setCalendarWidget(new TouchCalendar(m_pEdit));
    }
    return QObject::eventFilter(pWatched, pEvent);
}
