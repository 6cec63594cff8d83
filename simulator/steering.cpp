#include "steering.h"

#include "SimulatorAdaptor.h"

Steering::Steering(Device& oDevice, World& oWorld) : m_oDevice(oDevice), m_oWorld(oWorld)
{
    new SimulatorAdaptor(this);
}

QStringList Steering::Worlds()
{
    return World::names();
}

void Steering::SetWorld(const QString& name, const QString& argument)
{
    if (!m_oWorld.set(name, argument)) {
        reject(QStringLiteral("No such world, or an argument that it does not take"));
    }
}

void Steering::Clear()
{
    m_oDevice.clear();
    m_oWorld.set(QStringLiteral("well"), QString());
    m_oWorld.clearCalls();
}

QStringList Steering::Calls()
{
    return m_oWorld.calls();
}

void Steering::ClearCalls()
{
    m_oWorld.clearCalls();
}

QString Steering::Document() const
{
    return m_oDevice.m_oNetwork.toJSON();
}

void Steering::SetDocument(const QString& json)
{
    if (!m_oDevice.m_oNetwork.load(json)) {
        reject(QStringLiteral("Not a network configuration"));
    }
}

void Steering::SetVersion(const QString& text)
{
    m_oDevice.setVersion(text);
}

void Steering::reject(const QString& strReason)
{
    sendErrorReply(QDBusError::InvalidArgs, strReason);
}
