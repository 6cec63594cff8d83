#include "touch/touchcalendar.h"

#include <QBoxLayout>
#include <QGuiApplication>
#include <QHeaderView>
#include <QIcon>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QTableView>
#include <QTransform>

namespace {

constexpr int s_nColumns = 7;
constexpr int s_nRows = 6;
constexpr int s_nNamesHeight = 22; // of the days of the week
constexpr int s_nCell = 48;
constexpr int s_nRoomyCell = 40;
constexpr int s_nBesideWidth = 56; // of the buttons beside the days
constexpr int s_nFrame = 2;
constexpr int s_nTextMargin = 5; // around the name of a day
constexpr int s_nLabelWidth = 46;
constexpr int s_nLabelHeight = 24;
constexpr int s_aButtons[] = {48, 40, 36};
constexpr int s_nRepeatDelay = 400; // milliseconds
constexpr int s_nRepeatInterval = 250;
constexpr int s_nArrow = 24;
constexpr char s_szArrow[] = ":/images/touch/arrow-down.png";
constexpr char s_szBarSheet[] =
    "QPushButton { min-width: %1px; min-height: %1px; padding: 0px; border: none; }";

} // namespace

/** Where the buttons stand and how large everything is. */
struct TouchCalendar::sPlan
{
    bool m_bBeside;
    int m_nButton;
    QSize m_oCell;

    int least() const { return qMin(m_oCell.width(), m_oCell.height()); }

    QSize days() const { return {s_nColumns * m_oCell.width(), s_nNamesHeight + s_nRows * m_oCell.height()}; }
};

TouchCalendar::TouchCalendar(QWidget* pParent)
    : QCalendarWidget(pParent), m_pMonth(new QLabel), m_pYear(new QLabel)
{
    const QScreen* pScreen = QGuiApplication::primaryScreen();
    const QSize oScreen = pScreen ? pScreen->size() - QSize(1, 1) : QSize(); // the field places it one off
    const QSize oFrame(2 * s_nFrame, 2 * s_nFrame);
    sPlan oPlan = planFor(oScreen - oFrame);
    const bool bFramed = oPlan.least() >= qMin(s_nRoomyCell, planFor(oScreen).least());
    if (!bFramed) {
        oPlan = planFor(oScreen);
    }
    setNavigationBarVisible(false);
    setVerticalHeaderFormat(NoVerticalHeader);
    fitDays(oPlan);
    auto* pLayout = static_cast<QBoxLayout*>(layout());
    pLayout->setDirection(oPlan.m_bBeside ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom);
    pLayout->insertWidget(0, makeBar(oPlan));
    m_oSize = oPlan.days() + (oPlan.m_bBeside ? QSize(s_nBesideWidth, 0) : QSize(0, oPlan.m_nButton));
    if (bFramed) {
        setAttribute(Qt::WA_StyledBackground);
        pLayout->setContentsMargins(s_nFrame, s_nFrame, s_nFrame, s_nFrame);
        m_oSize += oFrame;
    }
    connect(this, SIGNAL(currentPageChanged(int, int)), this, SLOT(showPage()));
}

// Returns the plan with the largest cells, of several the one with the largest buttons, above the days if
// possible.
TouchCalendar::sPlan TouchCalendar::planFor(const QSize& oScreen)
{
    sPlan oBest = {false, s_aButtons[0], {}};
    for (const bool bBeside : {false, true}) {
        for (const int nButton : s_aButtons) {
            const QSize oBar = bBeside ? QSize(s_nBesideWidth, 0) : QSize(0, nButton);
            const QSize oDays = oScreen - oBar - QSize(0, s_nNamesHeight);
            const QSize oCell(qMin(oDays.width() / s_nColumns, s_nCell),
                              qMin(oDays.height() / s_nRows, s_nCell));
            const int nLength = 4 * nButton + 2 * (bBeside ? s_nLabelHeight : s_nLabelWidth);
            const bool bFits = nLength <= (bBeside ? oScreen.height() : oScreen.width());
            const sPlan oPlan = {bBeside, nButton, oCell};
            if (bFits && oPlan.least() > oBest.least()) {
                oBest = oPlan;
            }
        }
    }
    return oBest;
}

void TouchCalendar::fitDays(const sPlan& oPlan)
{
    auto* pDays = findChild<QTableView*>();
    pDays->setFixedSize(oPlan.days());
    pDays->horizontalHeader()->setMinimumSectionSize(1);
    QHeaderView* pRows = pDays->verticalHeader();
    pRows->setMinimumSectionSize(1);
    pRows->setSectionResizeMode(0, QHeaderView::Fixed); // the days of the week; the others share the rest
    pRows->resizeSection(0, s_nNamesHeight);
}

QWidget* TouchCalendar::makeBar(const sPlan& oPlan)
{
    auto* pBar = new QWidget;
    pBar->setObjectName(QStringLiteral("calendarBar"));
    pBar->setStyleSheet(QString(s_szBarSheet).arg(oPlan.m_nButton));
    auto* pLayout = new QBoxLayout(oPlan.m_bBeside ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight, pBar);
    pLayout->setContentsMargins(0, 0, 0, 0);
    pLayout->setSpacing(0);
    const int nBack = oPlan.m_bBeside ? 180 : 90; // the arrow points down
    const int nOn = oPlan.m_bBeside ? 0 : -90;
    pLayout->addWidget(makeButton("previousMonth", nBack, SLOT(showPreviousMonth())));
    pLayout->addWidget(m_pMonth, 1);
    pLayout->addWidget(makeButton("nextMonth", nOn, SLOT(showNextMonth())));
    pLayout->addWidget(makeButton("previousYear", nBack, SLOT(showPreviousYear())));
    pLayout->addWidget(m_pYear, 1);
    pLayout->addWidget(makeButton("nextYear", nOn, SLOT(showNextYear())));
    for (QLabel* pLabel : {m_pMonth, m_pYear}) {
        pLabel->setAlignment(Qt::AlignCenter);
        pLabel->setMinimumSize(1, 1); // the texts are chosen to fit
    }
    return pBar;
}

QPushButton* TouchCalendar::makeButton(const char* szName, int nAngle, const char* szSlot)
{
    auto* pButton = new QPushButton;
    pButton->setObjectName(szName);
    pButton->setIcon(QPixmap(s_szArrow).transformed(QTransform().rotate(nAngle)));
    pButton->setIconSize({s_nArrow, s_nArrow});
    pButton->setFocusPolicy(Qt::NoFocus);
    pButton->setAutoRepeat(true);
    pButton->setAutoRepeatDelay(s_nRepeatDelay);
    pButton->setAutoRepeatInterval(s_nRepeatInterval);
    connect(pButton, SIGNAL(clicked()), this, szSlot);
    return pButton;
}

void TouchCalendar::showEvent(QShowEvent* pEvent)
{
    QCalendarWidget::showEvent(pEvent);
    int nWidest = 0;
    for (int nDay = Qt::Monday; nDay <= Qt::Sunday; ++nDay) {
        const QString strName = locale().dayName(nDay, QLocale::ShortFormat);
        nWidest = qMax(nWidest, fontMetrics().horizontalAdvance(strName) + 2 * s_nTextMargin);
    }
    const bool bShort = nWidest < findChild<QTableView*>()->width() / s_nColumns;
    setHorizontalHeaderFormat(bShort ? ShortDayNames : SingleLetterDayNames);
    layout()->activate();
    showPage();
}

void TouchCalendar::showPage()
{
    m_pYear->setText(locale().toString(QDate(yearShown(), monthShown(), 1), QStringLiteral("yyyy")));
    QString strMonth = QString::number(monthShown());
    for (const auto eFormat : {QLocale::ShortFormat, QLocale::LongFormat}) {
        const QString strName = locale().standaloneMonthName(monthShown(), eFormat);
        if (m_pMonth->fontMetrics().horizontalAdvance(strName) < m_pMonth->width()) {
            strMonth = strName;
        }
    }
    m_pMonth->setText(strMonth);
}
