#include "touch/formarea.h"

#include "touch/fingerscroll.h"

#include <QFormLayout>
#include <QScrollBar>

namespace {

constexpr int s_nMinimumHeight = 40;

} // namespace

FormArea::FormArea(QFormLayout* pForm)
{
    setObjectName(QStringLiteral("formArea"));
    setFrameShape(QFrame::NoFrame);
    setWidgetResizable(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFocusPolicy(Qt::NoFocus);
    auto* pFields = new QWidget;
    pFields->setObjectName(QStringLiteral("fields"));
    pFields->setLayout(pForm);
    setWidget(pFields);
    letFingerScroll(this);
}

QSize FormArea::sizeHint() const
{
    const QSize oHint = widget()->sizeHint();
    const int nWidth = oHint.width() + verticalScrollBar()->sizeHint().width();
    const int nHeight = widget()->heightForWidth(qMax(nWidth, width()));
    return {nWidth, qMax(nHeight, oHint.height())};
}

QSize FormArea::minimumSizeHint() const
{
    return {widget()->minimumSizeHint().width() + verticalScrollBar()->sizeHint().width(), s_nMinimumHeight};
}

void FormArea::showFocus()
{
    QWidget* pFocus = widget()->focusWidget();
    if (pFocus && widget()->isAncestorOf(pFocus)) {
        ensureWidgetVisible(pFocus, 0, 0);
    }
}
