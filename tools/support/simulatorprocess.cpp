#include "support/simulatorprocess.h"

bool SimulatorProcess::start(const PrivateBus& oBus, const QStringList& oArguments)
{
    kill();
    waitForFinished();
    QDBusConnection::disconnectFromBus("steering");
    setProcessChannelMode(ForwardedErrorChannel); // shows its complaints beside a failure of the test
    if (startAndReadLine(OVIK_SIMULATOR, QStringList{"--address", oBus.address()} + oArguments) != "ready") {
        return false;
    }
    m_pSteering = std::make_unique<ComQuenOVIKSimulatorInterface>(
        "com.quen.OVIK.Simulator", "/Simulator", QDBusConnection::connectToBus(oBus.address(), "steering"));
    return m_pSteering->isValid();
}

bool SimulatorProcess::succeeds(QDBusPendingReply<> oReply)
{
    oReply.waitForFinished();
    return !oReply.isError();
}
