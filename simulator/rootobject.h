#pragma once

#include "simulatedobject.h"

#include <QDBusAbstractAdaptor>
#include <QDBusObjectPath>

/**
 * The object "/" with the interface "com.quen.OVIK".
 *
 * It has no images, no mouse, no counters: what is asked of them is answered with 0, an empty text or "/".
 * Nothing is restarted.
 */
class RootObject : public SimulatedObject
{
    Q_OBJECT

public:
    /** Answers out of the world oWorld. */
    RootObject(World& oWorld, QObject* pParent);

    /** Notes the call that makes the bus start the service, and rejects it as every service does. */
    void refuseAutostart();

public slots:
    // The members of the interface, as its description has them.
    QDBusObjectPath checkImage(const QString& imageType);
    int clearTimeCounters(int which);
    QDBusObjectPath downloadImage(const QString& imageType, const QString& source, const QString& sourceMd5,
                                  bool checkMd5);
    QString dualBootMode();
    QDBusObjectPath formatImage(const QString& imageType);
    int getBlightCounter();
    int getScreenOrientation();
    int getSysCounter();
    int lockScreen(const QString& display);
    int lockScreenSupported();
    void mouseNotification(int bPlugged);
    int mouseStatus(const QString& display);
    int restartSystem();
    int restartSystemWithImage(int imageType);
    int setScreenOrientation(int angle);
    int unlockScreen(const QString& display);
    QDBusObjectPath uploadImage(const QString& imageType, const QString& destination, bool checkMd5);
    QDBusObjectPath uploadRawImage(const QString& imageType, const QString& destination, bool checkMd5);

private:
    QDBusObjectPath answerNoImage();
    int answerZero();
};

/** Receives "q_autostart", which callers send without an interface; it is left out of the introspection. */
class AutostartAdaptor : public QDBusAbstractAdaptor
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.quen.OVIK.Simulator.Autostart")
    Q_CLASSINFO("D-Bus Introspection", "")

public:
    /** Hands the calls to the root object, its owner. */
    explicit AutostartAdaptor(RootObject* pRoot) : QDBusAbstractAdaptor(pRoot), m_pRoot(pRoot) {}

public slots:
    /** Receives the call. */
    void q_autostart() { m_pRoot->refuseAutostart(); }

private:
    RootObject* m_pRoot;
};
