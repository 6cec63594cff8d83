#pragma once

#include "device.h"
#include "simulatedobject.h"

#include <functional>

/**
 * The object "/ServiceManager" with the interface "com.quen.OVIK.ServiceManager": keeps the states of the
 * services.
 *
 * The calls that change something return 0, or -1 for a service that the device does not have.
 */
class ServiceManagerObject : public SimulatedObject
{
    Q_OBJECT

public:
    /** Answers out of the device oDevice and the world oWorld. */
    ServiceManagerObject(Device& oDevice, World& oWorld, QObject* pParent);

public slots:
    // The members of the interface, as its description has them.
    int start(const QString& service);
    int stop(const QString& service);
    int restart(const QString& service);
    int reload(const QString& service);
    int enable(const QString& service);
    int disable(const QString& service);
    bool enabled(const QString& service);
    /** Returns 1 for a running service, 0 for a stopped one, -1 for one that the device does not have. */
    int state(const QString& service);

private:
    int change(const QString& strService, const std::function<void(Device::sService&)>& fnChange);

    Device& m_oDevice;
};
