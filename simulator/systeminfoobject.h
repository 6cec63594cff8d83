#pragma once

#include "device.h"
#include "simulatedobject.h"

/** The object "/SystemInfo" with the interface "com.quen.OVIK.SystemInfo": tells the device's identification.
 */
class SystemInfoObject : public SimulatedObject
{
    Q_OBJECT

public:
    /** Answers out of the device oDevice and the world oWorld. */
    SystemInfoObject(Device& oDevice, World& oWorld, QObject* pParent);

public slots:
    // The members of the interface, as its description has them.
    uchar day();
    uchar hwCode();
    uchar hwDispID();
    uchar hwSubCode();
    systemInfo info();
    QByteArray manufactureCode();
    QByteArray moduleName();
    uchar month();
    QByteArray serialNo();
    uchar year();

private:
    Device& m_oDevice;
};
