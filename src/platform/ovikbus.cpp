#include "platform/ovikbus.h"

#include <QDBusMessage>
#include <QDebug>

namespace {

using ovikbus::s_szRootPath;
using ovikbus::s_szService;

constexpr int s_nProbeTimeoutMs = 5000;
constexpr int s_nProbes = 3;

/** Waits until Qt's thread knows the connection's unique name. */
void settleConnection(const QDBusConnection& oConnection)
{
    // Each call to a service reads the list of these names, which that thread changes without a lock: too
    // early a call can crash. Calls to the bus itself do not; after its second reply the name is there.
    const auto oCall =
        QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/"),
                                       QStringLiteral("org.freedesktop.DBus"), QStringLiteral("GetId"));
    oConnection.call(oCall, QDBus::Block, s_nProbeTimeoutMs);
    oConnection.call(oCall, QDBus::Block, s_nProbeTimeoutMs);
}

QDBusConnection* openConnection(QDBusConnection::BusType eBus)
{
    // Qt keeps a failed standard connection until the process ends; one with a name of its own can be closed.
    static int nOpened = 0;
    const auto oConnection = QDBusConnection::connectToBus(eBus, QStringLiteral("ovik-%1").arg(++nOpened));
    settleConnection(oConnection);
    return new QDBusConnection(oConnection);
}

void closeConnection(QDBusConnection* pConnection)
{
    const QString strName = pConnection->name();
    delete pConnection;
    QDBusConnection::disconnectFromBus(strName);
}

/** Returns a connection to the system bus, else to the session bus, else null. */
QDBusConnection* connectToBus()
{
    QDBusConnection* pConnection = openConnection(QDBusConnection::SystemBus);
    if (pConnection->isConnected()) {
        return pConnection;
    }
    qWarning() << "Failed connecting to DBUS system bus -> try OVIK on session bus";
    closeConnection(pConnection);
    pConnection = openConnection(QDBusConnection::SessionBus);
    if (pConnection->isConnected()) {
        return pConnection;
    }
    qWarning() << "Failed connecting to DBUS session bus -> trying loading OVIK plugin";
    closeConnection(pConnection);
    return nullptr;
}

QDBusMessage callRoot(const QDBusConnection& oConnection, const QString& strInterface,
                      const QString& strMember)
{
    const auto oCall = QDBusMessage::createMethodCall(s_szService, s_szRootPath, strInterface, strMember);
    return oConnection.call(oCall, QDBus::Block, s_nProbeTimeoutMs);
}

/** Returns the reply to the ping. */
QDBusMessage probeService(const QDBusConnection& oConnection)
{
    // Its reply does not matter: the call makes the bus start a service that it can activate.
    callRoot(oConnection, QString(), QStringLiteral("q_autostart"));
    return callRoot(oConnection, QStringLiteral("org.freedesktop.DBus.Peer"), QStringLiteral("Ping"));
}

bool isReply(const QDBusMessage& oMessage)
{
    return oMessage.type() == QDBusMessage::ReplyMessage;
}

/** Returns the reply to the last ping, the first that succeeded or a failed one. */
QDBusMessage probeRepeatedly(const QDBusConnection& oConnection)
{
    QDBusMessage oReply;
    for (int nRetry = 1; nRetry <= s_nProbes; ++nRetry) {
        oReply = probeService(oConnection);
        if (isReply(oReply)) {
            return oReply;
        }
        qWarning() << "Error reaching dbus service: " << oReply.errorMessage() << " -> retry #" << nRetry;
    }
    return oReply;
}

} // namespace

QDBusConnection* ovikbus::connectToService(const std::function<void(const QDBusConnection&)>& fnFound)
{
    QDBusConnection* pFirst = connectToBus();
    if (!pFirst) {
        return nullptr;
    }
    QDBusMessage oReply = probeRepeatedly(*pFirst);
    if (isReply(oReply)) {
        fnFound(*pFirst);
        return pFirst;
    }
    qWarning() << "Error reaching dbus service: " << oReply.errorMessage()
               << " -> try falling back to OVIK session bus";
    QDBusConnection* pSession = openConnection(QDBusConnection::SessionBus);
    if (!pSession->isConnected()) {
        closeConnection(pSession);
        return pFirst; // Kept, see docs/compatibility.md
    }
    oReply = probeService(*pSession);
    if (!isReply(oReply)) {
        qWarning() << "No OVIK service running !?" << oReply.errorMessage();
        closeConnection(pSession);
        closeConnection(pFirst);
        return nullptr;
    }
    // Kept, see docs/compatibility.md
    fnFound(*pFirst);
    qWarning() << "OVIK running in session bus! " << oReply.errorMessage();
    closeConnection(pFirst);
    return pSession;
}
