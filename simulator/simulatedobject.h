#pragma once

#include "world.h"

#include <QDBusConnection>
#include <QDBusContext>
#include <QObject>
#include <QTimer>
#include <QVariant>

#include <type_traits>

/**
 * What the five objects of the simulated service have in common: each call is noted, and replied to as the
 * present world wants it.
 */
class SimulatedObject : public QObject, protected QDBusContext
{
    Q_OBJECT

protected:
    /** Answers out of the world oWorld, which must outlive the object. */
    SimulatedObject(World& oWorld, QObject* pParent) : QObject(pParent), m_oWorld(oWorld) {}

    /** Returns the world. */
    World& world() { return m_oWorld; }

    /**
     * Handles the call that is being received.
     *
     * fnResult makes the reply of a service that is well; it is not run when the call fails, and runs later
     * when the service is slow.
     */
    template<typename Function>
    auto answer(Function fnResult)
    {
        using Result = decltype(fnResult());
        m_oWorld.noteCall(message());
        if (m_oWorld.fault() == World::eFault_Slow) {
            answerLater(
                [fnResult](const QDBusMessage& oCall) { return oCall.createReply(resultOf(fnResult)); });
        } else if (!fails(wrongType<Result>())) {
            return fnResult();
        }
        return Result();
    }

    /** Notes the call that is being received and sends a reply with the one value oValue. */
    void answerWith(const QVariant& oValue);

    /** Notes the call that is being received and rejects it with an error reply, if the world lets it reply.
     */
    void refuse(const QString& strError, const QString& strMessage);

private:
    /** Returns a value of another D-Bus type than Result. */
    template<typename Result>
    static QVariant wrongType()
    {
        if constexpr (std::is_arithmetic_v<Result>) {
            return QStringLiteral("of another type");
        } else {
            return 42;
        }
    }

    /** Returns the values of the reply: one, or none. */
    template<typename Function>
    static QVariantList resultOf(Function fnResult)
    {
        if constexpr (std::is_void_v<decltype(fnResult())>) {
            fnResult();
            return {};
        } else {
            return {QVariant::fromValue(fnResult())};
        }
    }

    template<typename Function>
    void answerLater(Function fnReply)
    {
        setDelayedReply(true);
        // By name: an object of the connection would keep it open when the service is to leave the bus.
        const QString strConnection = connection().name();
        const QDBusMessage oCall = message();
        QTimer::singleShot(m_oWorld.number(), this,
                           [=] { QDBusConnection(strConnection).send(fnReply(oCall)); });
    }

    bool fails(const QVariant& oWrongReply);

    World& m_oWorld;
};
