#pragma once

#include "touch/tap.h"

#include <QObject>

class QCheckBox;

/** Makes all of a check box usable with a finger, the area beside its text too. */
class TouchCheckBox : public QObject
{
    Q_OBJECT

public:
    /** Makes all of pCheckBox usable, which owns what that takes. */
    static void attachTo(QCheckBox* pCheckBox);

    /** Changes the mark on a tap; see QObject::eventFilter. */
    bool eventFilter(QObject* pWatched, QEvent* pEvent) override;

private:
    explicit TouchCheckBox(QCheckBox* pCheckBox);

    QCheckBox* m_pCheckBox;
    Tap m_oTap;
};
