#pragma once

#include "network/networkinterfacedetails.h"

class QObject;

/** How the network settings dialog reads and changes the settings of an interface; implemented by the panel.
 */
class NetworkInterfaceAccess
{
public:
    virtual ~NetworkInterfaceAccess() = default;

    /** Returns the current settings of the named interface; if they cannot be read, those last read of it, or
     * empty texts. */
    virtual sNetworkInterfaceDetails getInterfaceDetails(const QString& strName) = 0;

    /**
     * Sends the record to the service as the settings of the interface that it names.
     *
     * Returns false if the service is away or does not know the interface. Does not wait until the service
     * has taken the settings.
     */
    virtual bool setInterfaceDetails(const sNetworkInterfaceDetails& oDetails) = 0;

    /**
     * Watches how the service takes what the last setInterfaceDetails() has sent.
     *
     * Returns an object that emits finished(bool) once, true if the service has taken the settings, and then
     * deletes itself. To be called right after setInterfaceDetails().
     */
    virtual QObject* watchReplies() = 0;
};
