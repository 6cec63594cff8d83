#pragma once

#include "network/networkinterfacedetails.h"

/** What the network settings dialog asks of the panel: one interface's settings, and to change them. */
class NetworkInterfaceAccess
{
public:
    virtual ~NetworkInterfaceAccess() = default;

    /**
     * Returns the present settings of the named interface. If they cannot be read, they are those read last,
     * maybe of another interface; all empty without a bus.
     */
    virtual sNetworkInterfaceDetails getInterfaceDetails(const QString& strName) = 0;

    /**
     * Sends the record to the service as the settings of the interface that it names.
     *
     * Returns false if the service is away or does not know the interface; a later refusal is not reported.
     */
    virtual bool setInterfaceDetails(const sNetworkInterfaceDetails& oDetails) = 0;
};
