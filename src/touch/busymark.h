#pragma once

#include <QObject>
#include <QPointer>
#include <QTimer>

class QProgressBar;
class QPushButton;

/**
 * Shows on a button that what it started is at work, and then a tick if it was done.
 *
 * It changes nothing about the button itself, which can be pressed all the time: each start() takes the place
 * of the one before. Belongs to the button.
 */
class BusyMark : public QObject
{
    Q_OBJECT

public:
    /** Puts the mark, hidden, along the lower edge of the button. */
    explicit BusyMark(QPushButton* pButton);

    /** Calls finish() when the object emits finished(bool), unless start() comes before. */
    void finishWith(QObject* pWork);

public slots:
    /** Shows the mark at once, even if the event loop is not reached before the work is done. */
    void start();
    /** Leaves out the tick, whatever finish() is called with. */
    void fail();
    /** Ends the mark: with a tick for two seconds if the work was done, else as soon as a person has seen it.
     */
    void finish(bool bDone);

private slots:
    void hideTick();

private:
    QPushButton* m_pButton;
    QProgressBar* m_pBar;
    QTimer m_oStopTimer;
    QTimer m_oTickTimer;
    QPointer<QObject> m_pWork;
    bool m_bFailed = false;
};
