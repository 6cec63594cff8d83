#include "touch/nearestrow.h"

#include <QWidget>

QWidget* nearestRow(const QList<QWidget*>& oRows, const QPoint& oGlobal, int nReach)
{
    QWidget* pNearest = nullptr;
    int nNearest = nReach + 1;
    for (QWidget* pRow : oRows) {
        const int nY = pRow->mapFromGlobal(oGlobal).y();
        const int nDistance = qMax(qMax(-nY, nY - pRow->height() + 1), 0);
        if (pRow->isVisible() && nDistance < nNearest) {
            nNearest = nDistance;
            pNearest = pRow;
        }
    }
    return pNearest;
}
