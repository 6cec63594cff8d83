#include "panel/plainlabel.h"

#include <QEvent>

PlainLabel::PlainLabel(const QString& strText, QWidget* pParent) : QLabel(strText, pParent)
{
    setTextFormat(Qt::PlainText);
}

bool PlainLabel::event(QEvent* pEvent)
{
    return (pEvent->type() == QEvent::UpdateLater && visibleRegion().isEmpty()) || QLabel::event(pEvent);
}
