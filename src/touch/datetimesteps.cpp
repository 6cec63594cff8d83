#include "touch/datetimesteps.h"

#include <QDateTimeEdit>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace {

constexpr int s_nRepeatDelay = 400; // milliseconds
constexpr int s_nRepeatInterval = 120;

} // namespace

DateTimeSteps::DateTimeSteps(QDateTimeEdit* pEdit)
    : m_pEdit(pEdit), m_pText(pEdit->findChild<QLineEdit*>()), m_pPart(new QLabel)
{
    auto* pLayout = new QHBoxLayout(this);
    pLayout->setContentsMargins(0, 0, 0, 0);
    pLayout->addWidget(makeButton(QStringLiteral("stepDown"), QStringLiteral("\u2212"), SLOT(stepDown())), 1);
    pLayout->addWidget(m_pPart, 1);
    pLayout->addWidget(makeButton(QStringLiteral("stepUp"), QStringLiteral("+"), SLOT(stepUp())), 1);
    m_pPart->setObjectName(QStringLiteral("stepPart"));
    m_pPart->setAlignment(Qt::AlignCenter);
    pEdit->setWrapping(true);
    pEdit->installEventFilter(this);
    m_pText->installEventFilter(this);
    connect(m_pText, SIGNAL(cursorPositionChanged(int, int)), this, SLOT(showPart()));
    setEnabled(pEdit->isEnabled());
    showPart();
}

QPushButton* DateTimeSteps::makeButton(const QString& strName, const QString& strText, const char* szSlot)
{
    auto* pButton = new QPushButton;
    pButton->setObjectName(strName);
    pButton->setText(strText);
    pButton->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    pButton->setFocusPolicy(Qt::NoFocus); // the part in the field stays selected
    pButton->setAutoDefault(false);
    pButton->setAutoRepeat(true);
    pButton->setAutoRepeatDelay(s_nRepeatDelay);
    pButton->setAutoRepeatInterval(s_nRepeatInterval);
    connect(pButton, SIGNAL(clicked()), this, szSlot);
    return pButton;
}

bool DateTimeSteps::eventFilter(QObject* pWatched, QEvent* pEvent)
{
    if (pWatched == m_pText && pEvent->type() == QEvent::MouseButtonRelease) {
        QMetaObject::invokeMethod(this, "selectPart",
                                  Qt::QueuedConnection); // after the field has placed the cursor
    } else if (pWatched == m_pEdit && pEvent->type() == QEvent::EnabledChange) {
        setEnabled(m_pEdit->isEnabled());
    }
    return QWidget::eventFilter(pWatched, pEvent);
}

void DateTimeSteps::stepDown()
{
    step(-1);
}

void DateTimeSteps::stepUp()
{
    step(1);
}

void DateTimeSteps::step(int nSteps)
{
    m_pEdit->setFocus();
    if (m_pEdit->currentSection() == QDateTimeEdit::AmPmSection) {
        nSteps = m_pEdit->time().hour() < 12 ? 1 : -1; // Qt 6 does not wrap this part
    }
    m_pEdit->stepBy(nSteps);
    selectPart();
}

void DateTimeSteps::selectPart()
{
    m_pEdit->setSelectedSection(m_pEdit->currentSection());
}

void DateTimeSteps::showPart()
{
    switch (m_pEdit->currentSection()) {
    case QDateTimeEdit::DaySection:
        return m_pPart->setText(tr("Day"));
    case QDateTimeEdit::MonthSection:
        return m_pPart->setText(tr("Month"));
    case QDateTimeEdit::YearSection:
        return m_pPart->setText(tr("Year"));
    case QDateTimeEdit::HourSection:
        return m_pPart->setText(tr("Hour"));
    case QDateTimeEdit::MinuteSection:
        return m_pPart->setText(tr("Minute"));
    case QDateTimeEdit::AmPmSection:
        return m_pPart->setText(tr("AM/PM"));
    default:
        return m_pPart->clear();
    }
}
