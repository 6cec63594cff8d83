#pragma once

#include <QObject>

class QDateTimeEdit;

/**
 * Gives a date field its calendar (TouchCalendar) at the first touch: creating one takes longer than the rest
 * of a dialog, and most dialogs never show it.
 */
class LateCalendar : public QObject
{
    Q_OBJECT

public:
    /** Watches pEdit, which owns the watcher and later the calendar. */
    static void attachTo(QDateTimeEdit* pEdit);

    /** Creates the calendar before the field sees the press that opens it; see QObject::eventFilter. */
    bool eventFilter(QObject* pWatched, QEvent* pEvent) override;

private:
    explicit LateCalendar(QDateTimeEdit* pEdit);

    QDateTimeEdit* m_pEdit;
};
