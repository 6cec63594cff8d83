#pragma once

#include "support/childprocess.h"
#include "support/privatebus.h"

/** The product's platform client in a program of its own, so that each test has a fresh one: does actions. */
class PlatformClient : public ChildProcess
{
public:
    /** Starts the program; it looks for the system bus and the session bus at the addresses of the two. */
    PlatformClient(const PrivateBus& oSystemBus, const PrivateBus& oSessionBus);

    /** Does an action (an operation and its argument); returns the result, "gone" if the program ended. */
    QString act(const QString& strAction);

    /** Returns the lines logged since the last time. */
    QStringList takeLog();

private:
    QStringList m_oLog;
};
