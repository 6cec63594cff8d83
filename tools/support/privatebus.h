#pragma once

#include "support/childprocess.h"

#include <QTemporaryDir>

/** A private message bus. It can be stopped and started again at the same address. */
class PrivateBus
{
public:
    /** Starts the bus, which replies with an error to calls that nobody has answered within nReplyTimeoutMs
     * milliseconds; returns false when it does not start. */
    bool start(int nReplyTimeoutMs = 3000);

    /** Stops the bus, which closes all connections to it. */
    void stop();

    /** Returns the address, for the environment of programs that use the bus. */
    QString address() const { return "unix:path=" + m_oFolder.filePath("socket"); }

private:
    QTemporaryDir m_oFolder;
    ChildProcess m_oDaemon;
};
