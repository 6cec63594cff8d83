#include "touch/formarea.h"

#include "touch/fingerscroll.h"

#include <QCheckBox>
#include <QFormLayout>
#include <QScrollBar>

namespace {

constexpr int s_nMinimumHeight = 40;
constexpr int s_nColumnGap = 12;
constexpr int s_nRowGap = 6;

} // namespace

FormArea::FormArea(QFormLayout* pForm) : m_pForm(pForm)
{
    pForm->setContentsMargins(0, 0, 0, 0);
    pForm->setHorizontalSpacing(s_nColumnGap);
    pForm->setVerticalSpacing(s_nRowGap);
    pForm->setRowWrapPolicy(QFormLayout::DontWrapRows);
    pForm->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
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
        // All of it: ensureWidgetVisible() would reveal only the cursor.
        const QPoint oCenter = pFocus->mapTo(widget(), pFocus->rect().center());
        ensureVisible(oCenter.x(), oCenter.y(), 0, pFocus->height() / 2 + 1);
    }
}

void FormArea::wrapRows()
{
    m_pForm->setRowWrapPolicy(QFormLayout::WrapAllRows);
    for (int i = 0; i < m_pForm->rowCount(); ++i) {
        QLayoutItem* pLabel = m_pForm->itemAt(i, QFormLayout::LabelRole);
        if (pLabel && qobject_cast<QCheckBox*>(pLabel->widget())) {
            const QFormLayout::TakeRowResult oRow = m_pForm->takeRow(i);
            m_pForm->insertRow(i, oRow.labelItem->widget());
            m_pForm->insertRow(i + 1, oRow.fieldItem->widget());
            delete oRow.labelItem;
            delete oRow.fieldItem;
        }
    }
}
