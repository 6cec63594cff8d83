#include "simulatedobject.h"

bool SimulatedObject::fails(const QVariant& oWrongReply)
{
    const QString strMember = message().member();
    if (m_oWorld.strikes(World::eFault_Errors, strMember)) {
        sendErrorReply(QStringLiteral("com.quen.OVIK.Error.Failed"), QStringLiteral("Simulated failure"));
        return true;
    }
    if (m_oWorld.strikes(World::eFault_Silent, strMember)) {
        setDelayedReply(true);
        return true;
    }
    if (m_oWorld.fault() == World::eFault_WrongTypes && m_oWorld.argument().isEmpty()) {
        setDelayedReply(true);
        connection().send(message().createReply(oWrongReply));
        return true;
    }
    if (m_oWorld.strikes(World::eFault_Vanishes, strMember)) {
        setDelayedReply(true);
        m_oWorld.vanish();
        return true;
    }
    return false;
}

void SimulatedObject::refuse(const QString& strError, const QString& strMessage)
{
    m_oWorld.noteCall(message());
    if (m_oWorld.fault() == World::eFault_Slow) {
        answerLater([=](const QDBusMessage& oCall) { return oCall.createErrorReply(strError, strMessage); });
    } else if (!fails(42)) {
        sendErrorReply(strError, strMessage);
    }
}

void SimulatedObject::answerWith(const QVariant& oValue)
{
    m_oWorld.noteCall(message());
    setDelayedReply(true);
    connection().send(message().createReply(oValue));
}
