#pragma once

#include "wink/winkhorwidget.h"
#include "wink/winkverwidget.h"

#include <QEvent>
#include <QObject>
#include <QPointer>
#include <QTimer>

/** The events that the command channel posts to the EventGrabber; the numbers are fixed. */
enum eWinkEvent {
    eWinkEvent_On = QEvent::User,     /**< 1000: wink on */
    eWinkEvent_Off = QEvent::User + 1 /**< 1001: wink off */
};

/**
 * Receives the wink events, shows and hides the overlay that identifies the device, and keeps its time limit.
 * Used on the GUI thread only.
 */
class EventGrabber : public QObject
{
    Q_OBJECT

public:
    /** Returns the one instance; creates it on the first call. It and its overlay live until the process
     * ends. */
    static EventGrabber* getInstance();

    ~EventGrabber() override;

    /**
     * Handles eWinkEvent_On (shows the overlay for one minute from now) and eWinkEvent_Off (hides it).
     *
     * The first wink creates the overlay, a WinkHorWidget if the first screen is more than 480 pixels wide,
     * else a WinkVerWidget. Later winks show it again.
     * @return true for wink on; the base class's result for every other event
     */
    bool event(QEvent* pEvent) override;

private slots:
    void onTimeOut();

private:
    EventGrabber();
    void createOverlay();

    static bool m_bInstanceFlag;
    static EventGrabber* m_pInstance;

    QPointer<WinkHorWidget> m_pWinkHorWidget;
    QPointer<WinkVerWidget> m_pWinkVerWidget;
    QTimer m_oTimer;
};
