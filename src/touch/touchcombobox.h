#pragma once

#include "touch/tap.h"

#include <QObject>

class QComboBox;

/**
 * Makes a combo box usable with a finger: a tap opens its list, a drag does not; the list is a TouchList.
 */
class TouchComboBox : public QObject
{
    Q_OBJECT

public:
    /** Makes pComboBox usable, which owns what that takes. If it is editable, a tap beside the text opens the
     * list. */
    static void attachTo(QComboBox* pComboBox);

    /** Opens the list on a tap; see QObject::eventFilter. */
    bool eventFilter(QObject* pWatched, QEvent* pEvent) override;

private:
    explicit TouchComboBox(QComboBox* pComboBox);

    QComboBox* m_pComboBox;
    Tap m_oTap;
};
