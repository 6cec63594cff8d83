#pragma once

#include <QCalendarWidget>

class QLabel;
class QPushButton;

/**
 * A calendar for fingers that fits the screen: buttons for month and year, a day in each cell.
 *
 * Cells are 48 pixels wide and high, less where the screen has no room. The buttons stand above the days, or
 * beside them where that makes the cells larger. The screen is the default one.
 */
class TouchCalendar : public QCalendarWidget
{
    Q_OBJECT

public:
    /** Sets the sizes. */
    explicit TouchCalendar(QWidget* pParent);

    /** Returns the size on the screen. */
    QSize sizeHint() const override { return m_oSize; }
    /** Returns the same: nothing of it can be left out. */
    QSize minimumSizeHint() const override { return m_oSize; }

protected:
    /** Chooses names that fit, in the font that the calendar has now; see QWidget::showEvent. */
    void showEvent(QShowEvent* pEvent) override;

private slots:
    void showPage();

private:
    struct sPlan;

    static sPlan planFor(const QSize& oScreen);
    void fitDays(const sPlan& oPlan);
    QWidget* makeBar(const sPlan& oPlan);
    QPushButton* makeButton(const char* szName, int nAngle, const char* szSlot);

    QSize m_oSize;
    QLabel* m_pMonth;
    QLabel* m_pYear;
};
