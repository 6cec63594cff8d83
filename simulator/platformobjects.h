#pragma once

#include "networkdocument.h"
#include "world.h"

#include <QDBusConnection>
#include <QDBusVirtualObject>
#include <QDomElement>
#include <QHash>

#include <functional>

/**
 * The five objects of the simulated service.
 *
 * Checks each call and each answer against the description of the interfaces, records the call in the world,
 * and replies as the world wants. Members that the panel never calls have no effect and reply with empty
 * values.
 */
class PlatformObjects : public QDBusVirtualObject
{
    Q_OBJECT

public:
    /** Answers from the world, which must outlive the object; leases take nLeaseDelayMs milliseconds. */
    PlatformObjects(World& oWorld, int nLeaseDelayMs);

    /** Sets the version text of the main OS partition: Latin-1, cut or padded with NULs to 20 characters. */
    void setVersion(const QString& strVersion);

    /** Returns the network configuration, at first for the interfaces of this machine. */
    NetworkDocument& network() { return m_oNetwork; }

    /** Returns the description of the object at that path. */
    QString introspect(const QString& strPath) const override;

    /** Replies to a call, now or later; returns false if it is not for the service itself. */
    bool handleMessage(const QDBusMessage& oCall, const QDBusConnection& oConnection) override;

signals:
    /** The service has to die after the current call. */
    void vanishing();

private:
    void addAnswers();
    void answer(const QDBusMessage& oCall, const QDBusConnection& oConnection);
    QDomElement interfaceAt(const QString& strPath) const;
    QDomElement methodOf(const QDBusMessage& oCall) const;
    bool isKnown(const QString& strInterface);
    QVariant json(const QString& strJSON);
    QVariant record(const QVariantList& oFields);
    QDBusMessage replyTo(const QDBusMessage& oCall);

    World& m_oWorld;
    NetworkDocument m_oNetwork;
    QByteArray m_oVersion = "MAINOS-1.2-010203-00";
    QStringList m_oEnabledServices;
    QDomElement m_oDescription;
    QHash<QString, std::function<QVariant(const QVariantList&)>> m_oAnswers;
};
