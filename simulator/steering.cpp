#include "steering.h"

#include "SimulatorAdaptor.h"

Steering::Steering(Device& oDevice, World& oWorld, QObject* pParent)
    : QObject(pParent), m_oDevice(oDevice), m_oWorld(oWorld)
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
        rejectArguments();
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
        rejectArguments();
    }
}

void Steering::SetVersion(const QString& text)
{
    m_oDevice.setVersion(text);
}

void Steering::rejectArguments()
{
    sendErrorReply(QDBusError::InvalidArgs, QStringLiteral("Not one of the names or texts that are known"));
}
