#pragma once

#include "touch/tap.h"

#include <QObject>
#include <QPersistentModelIndex>

class QAbstractItemView;

/**
 * Makes a list usable with a finger: a drag scrolls it and chooses nothing, a tap chooses.
 *
 * Belongs to the list and lives as long as it.
 */
class TouchList : public QObject
{
    Q_OBJECT

public:
    /** @param pView a list, the pop-up of a combo box or of a completer; its delegate is replaced by one that
     *              obeys style sheets */
    explicit TouchList(QAbstractItemView* pView);

    /** Keeps from the list what is no tap; see QObject::eventFilter. */
    bool eventFilter(QObject* pWatched, QEvent* pEvent) override;

private:
    bool filterRelease(const QEvent* pEvent);

    QAbstractItemView* m_pView;
    QPersistentModelIndex m_oCurrent; // before the press
    Tap m_oTap;
};
