#pragma once

#include <QObject>

class QDateTimeEdit;

/**
 * Gives a date field its calendar (TouchCalendar) when a finger touches the field for the first time: making
 * one takes longer than all the rest of a dialog, and most dialogs never show it.
 */
class LateCalendar : public QObject
{
    Q_OBJECT

public:
    /** Watches the field, which owns it and later the calendar. */
    explicit LateCalendar(QDateTimeEdit* pEdit);

    /** Makes the calendar before the field sees the press that opens it; see QObject::eventFilter. */
    bool eventFilter(QObject* pWatched, QEvent* pEvent) override;

private:
    QDateTimeEdit* m_pEdit;
};
