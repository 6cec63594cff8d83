#include "touch/touchcalendar.h"

#include "window/popuphider.h"
#include "window/visiblescreen.h"

#include <QBoxLayout>
#include <QHeaderView>
#include <QIcon>
#include <QLabel>
#include <QPushButton>
#include <QTableView>
#include <QTransform>

namespace {

constexpr QSize s_oLeastScreen(240, 240);
constexpr int s_nLowScreen = 360;    // a wide screen that is lower has the buttons beside the days
constexpr int s_nNarrowScreen = 244; // leaves no room for a frame
constexpr int s_nColumns = 7;
constexpr int s_nRows = 6;
constexpr int s_nNamesHeight = 22; // of the days of the week
constexpr int s_nCell = 48;
constexpr int s_nBesideWidth = 56; // of the buttons beside the days
constexpr int s_nFrame = 2;
constexpr int s_nTextMargin = 5; // around the name of a day
constexpr int s_nLabelWidth = 46;
constexpr int s_nLabelHeight = 24;
constexpr int s_aButtons[] = {48, 40};
constexpr int s_nLeastButton = 36;
constexpr int s_nRepeatDelay = 400; // milliseconds
constexpr int s_nRepeatInterval = 250;
constexpr int s_nArrow = 24;
constexpr char s_szArrow[] = ":/images/touch/arrow-down.png";
constexpr char s_szBarSheet[] =
    "QPushButton { min-width: %1px; min-height: %1px; padding: 0px; border: none; }";

// Returns the size of four buttons that share nLength pixels.
int buttonFor(int nLength)
{
    for (const int nButton : s_aButtons) {
        if (4 * nButton <= nLength) {
            return nButton;
        }
    }
    return s_nLeastButton;
}

} // namespace

/** Where the buttons stand and how large everything is. */
struct TouchCalendar::sPlan
{
    explicit sPlan(const QSize& oScreen);

    bool m_bBeside;
    int m_nFrame;
    int m_nButton;
    QRect m_oBar;
    QRect m_oDays;
};

TouchCalendar::sPlan::sPlan(const QSize& oScreen)
    : m_bBeside(oScreen.width() > oScreen.height() && oScreen.height() < s_nLowScreen),
      m_nFrame(qMin(oScreen.width(), oScreen.height()) < s_nNarrowScreen ? 0 : s_nFrame)
{
    const QSize oRoom = oScreen - QSize(1, 1) - 2 * QSize(m_nFrame, m_nFrame); // the field places it one off
    m_nButton =
        buttonFor(m_bBeside ? oRoom.height() - 2 * s_nLabelHeight : oRoom.width() - 2 * s_nLabelWidth);
    const QSize oBar = m_bBeside ? QSize(s_nBesideWidth, 0) : QSize(0, m_nButton);
    const QSize oCells = oRoom - oBar - QSize(0, s_nNamesHeight);
    m_oDays = QRect(m_nFrame + oBar.width(), m_nFrame + oBar.height(),
                    s_nColumns * qMin(oCells.width() / s_nColumns, s_nCell),
                    s_nNamesHeight + s_nRows * qMin(oCells.height() / s_nRows, s_nCell));
    m_oBar = QRect(QPoint(m_nFrame, m_nFrame),
                   m_bBeside ? QSize(oBar.width(), m_oDays.height()) : QSize(m_oDays.width(), oBar.height()));
}

TouchCalendar::TouchCalendar(QWidget* pParent)
    : QCalendarWidget(pParent), m_pMonth(new QLabel), m_pYear(new QLabel)
{
    const sPlan oPlan(screenRect().size().expandedTo(s_oLeastScreen));
    setNavigationBarVisible(false);
    setVerticalHeaderFormat(NoVerticalHeader);
    setAttribute(Qt::WA_StyledBackground, oPlan.m_nFrame > 0); // draws the frame
    fitDays(oPlan);
    makeBar(oPlan);
    m_oSize = (oPlan.m_oBar | oPlan.m_oDays).size() + 2 * QSize(oPlan.m_nFrame, oPlan.m_nFrame);
    connect(this, SIGNAL(currentPageChanged(int, int)), this, SLOT(showPage()));
}

// Qt 5.15 and 6 show the days in this view.
QTableView* TouchCalendar::days() const
{
    return findChild<QTableView*>();
}

void TouchCalendar::fitDays(const sPlan& oPlan)
{
    layout()->setContentsMargins(oPlan.m_oDays.left(), oPlan.m_oDays.top(), oPlan.m_nFrame, oPlan.m_nFrame);
    days()->setFixedSize(oPlan.m_oDays.size());
    days()->horizontalHeader()->setMinimumSectionSize(1);
    QHeaderView* pRows = days()->verticalHeader();
    pRows->setMinimumSectionSize(1);
    pRows->setSectionResizeMode(0, QHeaderView::Fixed); // the days of the week; the others share the rest
    pRows->resizeSection(0, s_nNamesHeight);
}

void TouchCalendar::makeBar(const sPlan& oPlan)
{
    auto* pBar = new QWidget(this);
    pBar->setGeometry(oPlan.m_oBar);
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
    PopupHider::attachTo(window());
    int nWidest = 0;
    for (int nDay = Qt::Monday; nDay <= Qt::Sunday; ++nDay) {
        const QString strName = locale().dayName(nDay, QLocale::ShortFormat);
        nWidest = qMax(nWidest, fontMetrics().horizontalAdvance(strName) + 2 * s_nTextMargin);
    }
    const bool bShort = nWidest < days()->width() / s_nColumns;
    setHorizontalHeaderFormat(bShort ? ShortDayNames : SingleLetterDayNames);
    m_pMonth->parentWidget()->layout()->activate();
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
