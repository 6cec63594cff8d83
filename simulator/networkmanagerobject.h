#pragma once

#include "device.h"
#include "simulatedobject.h"

/**
 * The object "/NetworkManager" with the interface "com.quen.OVIK.NetworkManager": tells and changes the
 * network configuration.
 *
 * The calls that change something return 0, or -1 when they are refused.
 */
class NetworkManagerObject : public SimulatedObject
{
    Q_OBJECT

public:
    /** Answers out of the device oDevice and the world oWorld. */
    NetworkManagerObject(Device& oDevice, World& oWorld, QObject* pParent);

public slots:
    // The members of the interface, as its description has them.
    QString getConfigJSON();
    /** An interface that is not known is an error reply. */
    QString getInterfaceConfig(const QString& ifname);
    int setInterfaceConfigJSON(const QString& interface, const QString& config);
    /** The argument is a whole configuration, though it is called interface. */
    int setConfigJSON(const QString& interface);
    int applyNewConfiguration();

private:
    bool isKnown(const QString& strInterface);
    QString spoilt(const QString& strJSON);

    Device& m_oDevice;
};
