#pragma once

#include "support/childprocess.h"

#include <QTemporaryDir>

/** A message bus of the test's own. It can be stopped and started again at the same address. */
class PrivateBus
{
public:
    /** Starts the bus, which replies with an error to calls that nobody has answered within nReplyTimeoutMs
     * milliseconds; returns false when it does not come up. */
    bool start(int nReplyTimeoutMs = 3000);

    /** Stops the bus, and with it the connections of all who are on it. */
    void stop();

    /** Returns the address, for the environment of programs that are to find the bus. */
    QString address() const;

private:
    QTemporaryDir m_oFolder;
    ChildProcess m_oDaemon;
};
