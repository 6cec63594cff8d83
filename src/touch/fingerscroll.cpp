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
    // A tap while contents swing back from their end would only stop them.
    for (const auto eDirection :
         {QScrollerProperties::HorizontalOvershootPolicy, QScrollerProperties::VerticalOvershootPolicy}) {
        oProperties.setScrollMetric(eDirection, QVariant::fromValue(QScrollerProperties::OvershootAlwaysOff));
    }
    pScroller->setScrollerProperties(oProperties);
}
