#include "panel/rowlabel.h"

#include "panel/nounseenpaint.h"

#include <QEvent>

namespace {

constexpr int s_nMaxTextLength = 65536; // megabytes would take seconds to lay out

QString beginningOf(const QString& strText)
{
    const bool bSplitsCharacter =
        strText.size() > s_nMaxTextLength && strText[s_nMaxTextLength - 1].isHighSurrogate();
    return strText.left(bSplitsCharacter ? s_nMaxTextLength - 1 : s_nMaxTextLength);
}

} // namespace

RowLabel::RowLabel(const QString& strText, QWidget* pParent) : QLabel(strText, pParent)
{
    setTextFormat(Qt::PlainText);
}

bool RowLabel::event(QEvent* pEvent)
{
    if (pEvent->type() != QEvent::UpdateLater) {
        return QLabel::event(pEvent);
    }
    const NoUnseenPaint oNoUnseenPaint(this);
    return QLabel::event(pEvent);
}

void showText(QLabel* pLabel, const QString& strText)
{
    const NoUnseenPaint oNoUnseenPaint(pLabel);
    pLabel->setText(beginningOf(strText));
}
