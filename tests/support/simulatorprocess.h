#pragma once

#include "support/childprocess.h"
#include "support/privatebus.h"

#include <memory>

class ComQuenOVIKSimulatorInterface;

/** The simulated platform service as a program on a private bus: sets up the worlds that a test acts in. */
class SimulatorProcess
{
public:
    SimulatorProcess();
    ~SimulatorProcess();

    /** Starts it, or another one in its place, on the bus, with arguments of its command line; returns false
     * when it does not come up. */
    bool start(const PrivateBus& oBus, const QStringList& oArguments = {});

    /** Kills it without a farewell, as a crash does. */
    void kill();

    /** Waits for its end after its bus was stopped; returns true when it ended in good order, without a leak.
     */
    bool finish();

    /** Stops it in the middle of what it does, or has it go on, by a signal such as SIGSTOP. */
    void sendSignal(int nSignal);

    /** Puts everything back and sets up a world, see docs/platform-service.md; returns false if it is not
     * known. */
    bool setUp(const QString& strWorld, const QString& strArgument = {});

    /** Replaces the network configuration; returns false if the text is none. */
    bool setDocument(const QString& strJSON);

    /** Returns the calls received since the last setUp(), each as its path, member and arguments. */
    QStringList calls();

    /** Steers what is not a world; valid after start(). */
    ComQuenOVIKSimulatorInterface& steering() { return *m_pSteering; }

private:
    ChildProcess m_oProcess;
    QString m_strConnection;
    std::unique_ptr<ComQuenOVIKSimulatorInterface> m_pSteering;
};
