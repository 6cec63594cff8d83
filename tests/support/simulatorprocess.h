#pragma once

#include "SimulatorProxy.h"
#include "support/childprocess.h"
#include "support/privatebus.h"

#include <memory>

/** The simulated platform service as a program on a private bus, and its steering. One at a time. */
class SimulatorProcess : public ChildProcess
{
public:
    /** Starts it, in place of the one before, with arguments of its own; false when it does not come up. */
    bool start(const PrivateBus& oBus, const QStringList& oArguments = {});

    /** Replaces the network configuration; returns false if the text is none. */
    bool setDocument(const QString& strJSON);

    /** Returns the calls received, each as its path, member and arguments. */
    QStringList calls();

    /** Steers it, see docs/platform-service.md; valid after start(). */
    ComQuenOVIKSimulatorInterface& steering() { return *m_pSteering; }

    /** Waits for the reply to a steering call; returns false if it is an error. */
    static bool succeeds(QDBusPendingReply<> oReply);

private:
    std::unique_ptr<ComQuenOVIKSimulatorInterface> m_pSteering;
};
