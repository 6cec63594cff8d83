#pragma once

#include <QObject>
#include <QTimer>

class QProgressBar;
class QPushButton;

/**
 * Shows on a button that what it started is at work, and then that it was taken.
 *
 * It changes nothing about the button itself, which can be pressed on all the time. Belongs to the button.
 */
class BusyMark : public QObject
{
    Q_OBJECT

public:
    /** Puts the mark, hidden, along the lower edge of the button. */
    explicit BusyMark(QPushButton* pButton);

public slots:
    /** Shows the mark at once, even if the event loop is not reached before the work is done. */
    void start();
    /** Takes the mark away again, not before a person could see it. */
    void stop();
    /** Shows a tick on the button for two seconds. */
    void showTaken();

private slots:
    void hideTaken();

private:
    QPushButton* m_pButton;
    QProgressBar* m_pBar;
    QTimer m_oStopTimer;
    QTimer m_oTakenTimer;
};
