#pragma once

#include "touch/tap.h"

#include <QObject>
#include <QPersistentModelIndex>

class QAbstractItemView;

/**
 * Makes a list usable with a finger: a drag scrolls it and chooses nothing, a tap chooses.
 */
class TouchList : public QObject
{
    Q_OBJECT

public:
    /** Makes pView, a list or the pop-up of a combo box, usable; it owns what that takes. Replaces its
     * delegate by one that obeys style sheets. */
    static void attachTo(QAbstractItemView* pView);

    /** Filters out everything but taps; see QObject::eventFilter. */
    bool eventFilter(QObject* pWatched, QEvent* pEvent) override;

private:
    explicit TouchList(QAbstractItemView* pView);
    bool filterRelease(const QEvent* pEvent);

    QAbstractItemView* m_pView;
    QPersistentModelIndex m_oCurrent; // before the press
    Tap m_oTap;
};
