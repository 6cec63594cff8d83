#pragma once

#include "touch/tap.h"

#include <QObject>

class QComboBox;

/**
 * Makes a combo box usable with a finger: a tap opens its list, while a drag that starts on it does not; the
 * list is a TouchList.
 *
 * Belongs to the combo box and lives as long as it.
 */
class TouchComboBox : public QObject
{
    Q_OBJECT

public:
    /** @param pComboBox editable or not; of an editable one a tap beside the text opens the list */
    explicit TouchComboBox(QComboBox* pComboBox);

    /** Opens the list on a tap; see QObject::eventFilter. */
    bool eventFilter(QObject* pWatched, QEvent* pEvent) override;

private:
    QComboBox* m_pComboBox;
    Tap m_oTap;
};
