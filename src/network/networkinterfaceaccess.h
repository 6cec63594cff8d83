#pragma once

#include "network/networkinterfacedetails.h"

/** What the network settings dialog asks of the panel: one interface's settings, and to change them. */
class NetworkInterfaceAccess
{
public:
    /** Ends with whoever implements it. */
    virtual ~NetworkInterfaceAccess() = default;

    /** Returns the settings of the named interface as the system has them now; empty texts if it cannot tell.
     */
    virtual sNetworkInterfaceDetails getInterfaceDetails(const QString& strName) = 0;

    /** Applies the record to the interface that it names; returns false if the settings were refused. */
    virtual bool setInterfaceDetails(const sNetworkInterfaceDetails& oDetails) = 0;
};
