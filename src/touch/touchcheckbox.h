#pragma once

#include "touch/tap.h"

#include <QObject>

class QCheckBox;

/**
 * Makes all of a check box usable with a finger, also what lies beside its text.
 *
 * Belongs to the check box and lives as long as it.
 */
class TouchCheckBox : public QObject
{
    Q_OBJECT

public:
    /** @param pCheckBox as large as what is to be tapped */
    explicit TouchCheckBox(QCheckBox* pCheckBox);

    /** Changes the mark on a tap; see QObject::eventFilter. */
    bool eventFilter(QObject* pWatched, QEvent* pEvent) override;

private:
    QCheckBox* m_pCheckBox;
    Tap m_oTap;
};
