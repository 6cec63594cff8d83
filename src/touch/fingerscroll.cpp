#include "touch/fingerscroll.h"

#include "touch/tap.h"

#include <QAbstractItemView>
#include <QScroller>

void letFingerScroll(QAbstractScrollArea* pArea)
{
    if (auto* pView = qobject_cast<QAbstractItemView*>(pArea)) {
        pView->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    }
    QScroller::grabGesture(pArea->viewport(), QScroller::LeftMouseButtonGesture);
    QScroller* pScroller = QScroller::scroller(pArea->viewport());
    QScrollerProperties oProperties = pScroller->scrollerProperties();
    const qreal nMetres = Tap::distance() / pScroller->pixelPerMeter().x();
    oProperties.setScrollMetric(QScrollerProperties::DragStartDistance, nMetres);
    pScroller->setScrollerProperties(oProperties);
}
