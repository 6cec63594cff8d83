#pragma once

#include "device.h"
#include "world.h"

#include <QDBusContext>
#include <QObject>
#include <QStringList>

/** The object "/Simulator" of the bus name "com.quen.OVIK.Simulator": steers the simulated service from
 * outside. */
class Steering : public QObject, protected QDBusContext
{
    Q_OBJECT

public:
    /** Steers the device oDevice and the world oWorld, which must outlive the object. */
    Steering(Device& oDevice, World& oWorld);

public slots:
    // The members of the interface, as its description has them. Each replies after its work is done.

    /** Returns the names of the worlds. */
    QStringList Worlds();
    /** Sets up a world; an error reply tells that World::set() refuses the name or the argument. */
    void SetWorld(const QString& name, const QString& argument);
    /** Puts everything back: the service is well, the device as at first, the list of calls empty. */
    void Clear();
    /** Returns one line for each call received, of very many the latest. */
    QStringList Calls();
    /** Empties the list of calls. */
    void ClearCalls();
    /** Returns the whole network configuration. */
    QString Document() const;
    /** Replaces the whole network configuration; an error reply tells that the text is none. */
    void SetDocument(const QString& json);
    /** Sets the version text of the main OS partition. */
    void SetVersion(const QString& text);

private:
    void reject(const QString& strReason);

    Device& m_oDevice;
    World& m_oWorld;
};
