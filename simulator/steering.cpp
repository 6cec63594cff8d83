#include "steering.h"

void Steering::SetWorld(const QString& name, const QString& argument)
{
    if (!m_oWorld.set(name, argument)) {
        sendErrorReply(QDBusError::InvalidArgs, "No such world");
    }
}

void Steering::SetDocument(const QString& json)
{
    if (!m_oObjects.network().load(json)) {
        sendErrorReply(QDBusError::InvalidArgs, "Not a network configuration");
    }
}
