#pragma once

#include "support/childprocess.h"
#include "support/privatebus.h"

/** The product's platform client in a program of its own, so that each test has a fresh one: does actions. */
class PlatformClient : public ChildProcess
{
public:
    /** Starts the program; it looks for the system bus and the session bus at the addresses of the two. */
    PlatformClient(const PrivateBus& oSystemBus, const PrivateBus& oSessionBus);

    /** Does an action, the name of an operation and its argument; returns its result, "gone" when the program
     * has ended instead. */
    QString act(const QString& strAction);

    /** Returns the lines logged since the last time. */
    QStringList takeLog();

    /** Ends the program; returns true when it ended in good order, without a leak. */
    bool finish();

private:
    QStringList m_oLog;
};
