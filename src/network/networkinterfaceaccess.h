#pragma once

#include "network/networkinterfacedetails.h"

/** What the network settings dialog asks of the panel: one interface's settings, and to change them. */
class NetworkInterfaceAccess
{
public:
    virtual ~NetworkInterfaceAccess() = default;

    /** Returns the present settings of the named interface; after a failed reading what was read last, of
     * any. */
    virtual sNetworkInterfaceDetails getInterfaceDetails(const QString& strName) = 0;

    /** Applies the record to the interface that it names; returns false if the settings were refused. */
    virtual bool setInterfaceDetails(const sNetworkInterfaceDetails& oDetails) = 0;
};
