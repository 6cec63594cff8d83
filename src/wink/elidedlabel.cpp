#include "wink/elidedlabel.h"

#include <QPainter>
#include <QTextLayout>

namespace {

constexpr int s_nMaxCharacters = 500; // more are never seen, and megabytes would take seconds to lay out

} // namespace

ElidedLabel::ElidedLabel(QWidget* pParent) : QLabel(pParent)
{
    setTextFormat(Qt::PlainText);
    setWordWrap(true); // has the layouts ask for heightForWidth()
}

QSize ElidedLabel::sizeHint() const
{
    return {0, fontMetrics().lineSpacing()};
}

QSize ElidedLabel::minimumSizeHint() const
{
    return sizeHint();
}

int ElidedLabel::heightForWidth(int nWidth) const
{
    return qMax(static_cast<int>(wrappedLines(nWidth, s_nMaxCharacters).size()), 1) *
           fontMetrics().lineSpacing();
}

void ElidedLabel::paintEvent(QPaintEvent* pEvent)
{
    Q_UNUSED(pEvent)
    QPainter oPainter(this);
    drawFrame(&oPainter);
    const QRect oRect = contentsRect();
    const int nMaxLines = qMax(1, oRect.height() / fontMetrics().lineSpacing());
    const QStringList oLines = wrappedLines(oRect.width(), nMaxLines);
    oPainter.drawText(oRect, static_cast<int>(alignment()) & ~Qt::TextWordWrap, oLines.join('\n'));
}

QStringList ElidedLabel::wrappedLines(int nWidth, int nMaxLines) const
{
    QString strText = text().left(s_nMaxCharacters);
    if (!strText.isEmpty() && strText.at(strText.size() - 1).isHighSurrogate()) {
        strText.chop(1);
    }
    QTextLayout oLayout(strText, font());
    QTextOption oOption;
    oOption.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    oLayout.setTextOption(oOption);
    oLayout.beginLayout();
    QStringList oLines;
    for (QTextLine oLine = oLayout.createLine(); oLine.isValid(); oLine = oLayout.createLine()) {
        oLine.setLineWidth(nWidth);
        if (oLines.size() + 1 == nMaxLines) {
            oLines.append(fontMetrics().elidedText(strText.mid(oLine.textStart()), Qt::ElideRight, nWidth));
            break;
        }
        oLines.append(strText.mid(oLine.textStart(), oLine.textLength()).trimmed());
    }
    oLayout.endLayout();
    return oLines;
}
