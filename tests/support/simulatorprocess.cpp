#include "support/simulatorprocess.h"

bool SimulatorProcess::start(const PrivateBus& oBus, const QStringList& oArguments)
{
    const QString strConnection = QStringLiteral("steering");
    kill();
    waitForFinished();
    QDBusConnection::disconnectFromBus(strConnection);
    const QStringList oAddress = {QStringLiteral("--address"), oBus.address()};
    if (startAndReadLine(QStringLiteral(OVIK_SIMULATOR), oAddress + oArguments) != QLatin1String("ready")) {
        return false;
    }
    m_pSteering = std::make_unique<ComQuenOVIKSimulatorInterface>(
        QStringLiteral("com.quen.OVIK.Simulator"), QStringLiteral("/Simulator"),
        QDBusConnection::connectToBus(oBus.address(), strConnection));
    return m_pSteering->isValid();
}

bool SimulatorProcess::setDocument(const QString& strJSON)
{
    return succeeds(m_pSteering->SetDocument(strJSON));
}

QStringList SimulatorProcess::calls()
{
    return m_pSteering->Calls().value();
}

bool SimulatorProcess::succeeds(QDBusPendingReply<> oReply)
{
    oReply.waitForFinished();
    return !oReply.isError();
}
