#include "touch/touchcombobox.h"

#include "touch/touchlist.h"
#include "window/popuphider.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QEvent>

void TouchComboBox::attachTo(QComboBox* pComboBox)
{
    new TouchComboBox(pComboBox);
}

TouchComboBox::TouchComboBox(QComboBox* pComboBox) : QObject(pComboBox), m_pComboBox(pComboBox)
{
    TouchList::attachTo(pComboBox->view());
    PopupHider::attachTo(pComboBox->view()->window());
    pComboBox->installEventFilter(this);
}

bool TouchComboBox::eventFilter(QObject* pWatched, QEvent* pEvent)
{
    const bool bTap = m_oTap.follow(pEvent);
    switch (pEvent->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
        return true; // would open the list below a finger that may go on to drag
    case QEvent::MouseButtonRelease:
        if (bTap && m_pComboBox->isEnabled()) {
            m_pComboBox->showPopup();
        }
        return true;
    default:
        return QObject::eventFilter(pWatched, pEvent);
    }
}
