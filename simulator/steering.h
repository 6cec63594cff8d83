#pragma once

#include "platformobjects.h"

#include <QDBusContext>
#include <QStringList>

/** The object "/Simulator" of the bus name "com.quen.OVIK.Simulator": steers the simulated service from
 * outside. */
class Steering : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.quen.OVIK.Simulator")

public:
    /** Steers the objects oObjects and the world oWorld, which must outlive it. */
    Steering(PlatformObjects& oObjects, World& oWorld) : m_oObjects(oObjects), m_oWorld(oWorld) {}

public slots:
    // The members of com.quen.OVIK.Simulator.xml. Each replies after its work is done.

    /** Sets up a world; replies with an error if there is no such world. */
    void SetWorld(const QString& name, const QString& argument);
    /** Returns one line for each call received, the latest 10,000. */
    QStringList Calls() const { return m_oWorld.calls(); }
    /** Empties the list of calls. */
    void ClearCalls() { m_oWorld.clearCalls(); }
    /** Returns the whole network configuration. */
    QString Document() const { return m_oObjects.network().toJSON(); }
    /** Replaces the whole network configuration; replies with an error if the text is not one. */
    void SetDocument(const QString& json);
    /** Sets the version text of the main OS partition. */
    void SetVersion(const QString& text) { m_oObjects.setVersion(text); }

private:
    PlatformObjects& m_oObjects;
    World& m_oWorld;
};
