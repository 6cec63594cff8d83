#pragma once

#include "platformobjects.h"

#include <QTimer>

#include <functional>

/**
 * Publishes the objects as "com.quen.OVIK" on a bus connection of its own, and leaves the bus and comes back
 * as the world wants.
 */
class SimulatedService : public QObject
{
    Q_OBJECT

public:
    /** Opens a connection to the bus with the given name, a new one each time. */
    using fnConnect = std::function<QDBusConnection(const QString&)>;

    /** Publishes nothing yet; the objects and the world must outlive the service. */
    SimulatedService(PlatformObjects& oObjects, World& oWorld, fnConnect fnConnectToBus);

    /** Leaves the bus. */
    ~SimulatedService() override;

public slots:
    /** Joins or leaves the bus as the present world wants; returns false if the bus refuses the name. */
    bool publish();

private slots:
    void die();

private:
    void withdraw();

    PlatformObjects& m_oObjects;
    World& m_oWorld;
    fnConnect m_fnConnectToBus;
    QTimer m_oRecovery;
    QString m_strConnection;
    int m_nConnections = 0;
};
