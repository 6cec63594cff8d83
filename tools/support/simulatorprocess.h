#pragma once

#include "SimulatorProxy.h"
#include "support/childprocess.h"
#include "support/privatebus.h"

#include <memory>

/** The simulated platform service as a child process on a private bus, and its steering. One at a time. */
class SimulatorProcess : public ChildProcess
{
public:
    /** Starts it with further arguments, in place of the one before; returns false when it does not start. */
    bool start(const PrivateBus& oBus, const QStringList& oArguments = {});

    /** Replaces the network configuration; returns false when the text is none. */
    bool setDocument(const QString& strJSON) { return succeeds(m_pSteering->SetDocument(strJSON)); }

    /** Returns the calls received, each as path, member and arguments. */
    QStringList calls() { return m_pSteering->Calls().value(); }

    /** Steers it, see docs/simulator.md; valid after start(). */
    ComQuenOVIKSimulatorInterface& steering() { return *m_pSteering; }

    /** Waits for the reply to a steering call; returns false if it is an error. */
    static bool succeeds(QDBusPendingReply<> oReply);

private:
    std::unique_ptr<ComQuenOVIKSimulatorInterface> m_pSteering;
};
