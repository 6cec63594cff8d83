#pragma once

#include "network/networkinterfacedetails.h"

#include <QList>
#include <QMap>

/**
 * The settings of the network interfaces, read and written through OVIKPlatform.
 *
 * Reading and writing block until the platform service has answered.
 */
class InterfaceSettings
{
public:
    /**
     * Reads the current settings of an interface.
     *
     * If they cannot be read, the result is what was last read of this interface; empty texts if nothing
     * ever was.
     */
    sNetworkInterfaceDetails read(const QString& strName);

    /**
     * Reads the settings of every interface that the operating system reports, in its order, except loopback
     * and CAN. Each has its name even if it could not be read.
     */
    QList<sNetworkInterfaceDetails> readAll();

    /**
     * Sends the addresses and the DHCP flag of the record to the platform service, for the interface that the
     * record names. An invalid IPv4 address is sent as 0.0.0.0.
     * @return what OVIKPlatform::SetNetworkSettings() returns; true also if the interface could not be
     * selected
     */
    static bool write(const sNetworkInterfaceDetails& oDetails);

    /** Returns three interfaces that do not exist, eth0 to eth2, for development. */
    static QList<sNetworkInterfaceDetails> testDetails();

private:
    QMap<QString, sNetworkInterfaceDetails> m_oLastRead; // by interface name
};
