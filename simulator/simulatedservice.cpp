#include "simulatedservice.h"

namespace {

constexpr char s_szService[] = "com.quen.OVIK";

} // namespace

SimulatedService::SimulatedService(PlatformObjects& oObjects, World& oWorld, fnConnect fnConnectToBus)
    : m_oObjects(oObjects), m_oWorld(oWorld), m_fnConnectToBus(std::move(fnConnectToBus))
{
    m_oRecovery.setSingleShot(true);
    connect(&m_oRecovery, &QTimer::timeout, &m_oWorld, [this] { m_oWorld.set("well", QString()); });
    connect(&m_oWorld, SIGNAL(changed()), SLOT(publish()));
    connect(&m_oObjects, SIGNAL(vanishing()), SLOT(die()), Qt::QueuedConnection);
}

SimulatedService::~SimulatedService()
{
    withdraw();
}

bool SimulatedService::publish()
{
    m_oRecovery.stop();
    if (m_oWorld.is("absent")) {
        withdraw();
        return true;
    }
    if (m_oWorld.is("root-late") && m_oWorld.number() >= 0) {
        m_oRecovery.start(m_oWorld.number());
    }
    if (m_strConnection.isEmpty()) {
        m_strConnection = QStringLiteral("service-%1").arg(++m_nConnections);
        m_fnConnectToBus(m_strConnection).registerVirtualObject("/", &m_oObjects, QDBusConnection::SubPath);
    }
    return QDBusConnection(m_strConnection).registerService(s_szService);
}

/** Closes the connection: a caller that waits for a reply gets an error, as if the service had died. */
void SimulatedService::withdraw()
{
    if (m_strConnection.isEmpty()) {
        return;
    }
    QDBusConnection(m_strConnection).unregisterService(s_szService);
    QDBusConnection::disconnectFromBus(m_strConnection);
    m_strConnection.clear();
}

void SimulatedService::die()
{
    // Another world may have been set up since the call that the service was to die of.
    if (!m_oWorld.is("vanishes")) {
        return;
    }
    withdraw();
    m_oRecovery.start(m_oWorld.number());
}
