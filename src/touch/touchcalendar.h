#pragma once

#include <QCalendarWidget>

class QLabel;
class QPushButton;
class QTableView;

/**
 * A calendar for fingers that fits the screen: buttons for month and year, a day in each cell.
 *
 * Cells are up to 48 pixels wide and high. The buttons stand above the days, or beside them on a low screen.
 */
class TouchCalendar : public QCalendarWidget
{
    Q_OBJECT

public:
    /** Fits the calendar to the screen. */
    explicit TouchCalendar(QWidget* pParent);

    /** Returns the size on the screen. */
    QSize sizeHint() const override { return m_oSize; }
    /** Returns sizeHint(). */
    QSize minimumSizeHint() const override { return m_oSize; }

protected:
    /** Chooses names that fit, in the font that the calendar has now; see QWidget::showEvent. */
    void showEvent(QShowEvent* pEvent) override;

private slots:
    void showPage();

private:
    struct sPlan;

    QTableView* days() const;
    void fitDays(const sPlan& oPlan);
    void makeBar(const sPlan& oPlan);
    QPushButton* makeButton(const char* szName, int nAngle, const char* szSlot);

    QSize m_oSize;
    QLabel* m_pMonth;
    QLabel* m_pYear;
};
