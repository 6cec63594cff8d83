#pragma once

#include <QEvent>
#include <QObject>
#include <QTimer>

/** The events that the command channel posts to the EventGrabber; the numbers are fixed. */
enum eWinkEvent {
    eWinkEvent_On = QEvent::User,     /**< 1000: wink on */
    eWinkEvent_Off = QEvent::User + 1 /**< 1001: wink off */
};

/**
 * Receives the wink events and keeps the time limit of a wink. Used on the GUI thread only.
 */
class EventGrabber : public QObject
{
    Q_OBJECT

public:
    /** Returns the one instance; creates it on the first call. It lives until the process ends. */
    static EventGrabber* getInstance();

    /**
     * Handles eWinkEvent_On (starts the one-minute limit again) and eWinkEvent_Off (stops it).
     * @return true for wink on; the base class's result for every other event
     */
    bool event(QEvent* pEvent) override;

private:
    EventGrabber();

    static bool m_bInstanceFlag;
    static EventGrabber* m_pInstance;

    QTimer m_oTimer;
};
