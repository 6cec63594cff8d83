#include "simulatedservice.h"

namespace {

const QString s_strService = QStringLiteral("com.quen.OVIK");
const QString s_strRootPath = QStringLiteral("/");

} // namespace

SimulatedService::SimulatedService(Device& oDevice, World& oWorld, fnConnect fnConnectToBus)
    : m_oWorld(oWorld), m_fnConnectToBus(std::move(fnConnectToBus)), m_oRoot(oWorld, this),
      m_oSystemInfo(oDevice, oWorld, this), m_oMainOSInfo(oDevice, oWorld, this),
      m_oNetworkManager(oDevice, oWorld, this), m_oServiceManager(oDevice, oWorld, this)
{
    m_oRecovery.setSingleShot(true);
    connect(&m_oRecovery, &QTimer::timeout, &m_oWorld,
            [this] { m_oWorld.set(QStringLiteral("well"), QString()); });
    connect(&m_oWorld, SIGNAL(changed()), SLOT(publish()));
    connect(&m_oWorld, SIGNAL(vanishing()), SLOT(die()), Qt::QueuedConnection);
}

SimulatedService::~SimulatedService()
{
    withdraw();
}

bool SimulatedService::publish()
{
    m_oRecovery.stop();
    if (m_oWorld.fault() == World::eFault_Absent) {
        withdraw();
        return true;
    }
    if (m_strConnection.isEmpty()) {
        connectObjects();
    }
    publishRoot();
    return QDBusConnection(m_strConnection).registerService(s_strService);
}

void SimulatedService::connectObjects()
{
    m_strConnection = QStringLiteral("service-%1").arg(++m_nConnections);
    QDBusConnection oConnection = m_fnConnectToBus(m_strConnection);
    oConnection.registerObject(QStringLiteral("/SystemInfo"), &m_oSystemInfo);
    oConnection.registerObject(QStringLiteral("/MainOSInfo"), &m_oMainOSInfo);
    oConnection.registerObject(QStringLiteral("/NetworkManager"), &m_oNetworkManager);
    oConnection.registerObject(QStringLiteral("/ServiceManager"), &m_oServiceManager);
}

void SimulatedService::publishRoot()
{
    QDBusConnection oConnection(m_strConnection);
    if (m_oWorld.fault() != World::eFault_RootLate) {
        oConnection.registerObject(s_strRootPath, &m_oRoot);
        return;
    }
    oConnection.unregisterObject(s_strRootPath);
    if (m_oWorld.number() >= 0) {
        m_oRecovery.start(m_oWorld.number());
    }
}

/** Closes the connection, so that a caller that waits for a reply gets an error as if the service had died.
 */
void SimulatedService::withdraw()
{
    if (m_strConnection.isEmpty()) {
        return;
    }
    QDBusConnection(m_strConnection).unregisterService(s_strService);
    QDBusConnection::disconnectFromBus(m_strConnection);
    m_strConnection.clear();
}

void SimulatedService::die()
{
    // Another world may have been set up since the call that the service was to die of.
    if (m_oWorld.fault() != World::eFault_Vanishes) {
        return;
    }
    withdraw();
    m_oRecovery.start(m_oWorld.number());
}
