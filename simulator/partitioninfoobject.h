#pragma once

#include "device.h"
#include "simulatedobject.h"

/** The object "/MainOSInfo" with the interface "com.quen.OVIK.PartitionInfo": tells the version of the main
 * OS. */
class PartitionInfoObject : public SimulatedObject
{
    Q_OBJECT

public:
    /** Answers out of the device oDevice and the world oWorld. */
    PartitionInfoObject(Device& oDevice, World& oWorld, QObject* pParent);

public slots:
    // The members of the interface, as its description has them.
    uchar day();
    partitionInfo info();
    uchar month();
    QByteArray version();
    uchar year();

private:
    Device& m_oDevice;
};
