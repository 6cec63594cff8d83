#pragma once

#include "networkmanagerobject.h"
#include "partitioninfoobject.h"
#include "rootobject.h"
#include "servicemanagerobject.h"
#include "systeminfoobject.h"

#include <QTimer>

#include <functional>

/**
 * Publishes the five objects as "com.quen.OVIK" on a bus connection of its own, and leaves the bus and comes
 * back as the world wants it.
 */
class SimulatedService : public QObject
{
    Q_OBJECT

public:
    /** Opens a connection to the bus under the name given; the name is new each time. */
    using fnConnect = std::function<QDBusConnection(const QString&)>;

    /** Answers out of the device oDevice and the world oWorld; nothing is published yet. */
    SimulatedService(Device& oDevice, World& oWorld, fnConnect fnConnectToBus);

    /** Leaves the bus. */
    ~SimulatedService() override;

public slots:
    /** Publishes what the present world lets be there; returns false when the bus does not let it. */
    bool publish();

private slots:
    void die();

private:
    void connectObjects();
    void publishRoot();
    void withdraw();

    World& m_oWorld;
    fnConnect m_fnConnectToBus;
    RootObject m_oRoot;
    SystemInfoObject m_oSystemInfo;
    PartitionInfoObject m_oMainOSInfo;
    NetworkManagerObject m_oNetworkManager;
    ServiceManagerObject m_oServiceManager;
    QTimer m_oRecovery;
    QString m_strConnection;
    int m_nConnections = 0;
};
