#include "support/simulatorprocess.h"

#include "SimulatorProxy.h"

#include <csignal>

SimulatorProcess::SimulatorProcess() = default;

SimulatorProcess::~SimulatorProcess()
{
    QDBusConnection::disconnectFromBus(m_strConnection);
}

bool SimulatorProcess::start(const PrivateBus& oBus, const QStringList& oArguments)
{
    static int nConnections = 0;
    kill();
    QDBusConnection::disconnectFromBus(m_strConnection);
    m_strConnection = QStringLiteral("steering-%1").arg(++nConnections);
    const QStringList oAddress = {QStringLiteral("--address"), oBus.address()};
    if (m_oProcess.startAndReadLine(QStringLiteral(OVIK_SIMULATOR), oAddress + oArguments) !=
        QLatin1String("ready")) {
        return false;
    }
    m_pSteering = std::make_unique<ComQuenOVIKSimulatorInterface>(
        QStringLiteral("com.quen.OVIK.Simulator"), QStringLiteral("/Simulator"),
        QDBusConnection::connectToBus(oBus.address(), m_strConnection));
    return m_pSteering->isValid();
}

void SimulatorProcess::kill()
{
    m_oProcess.kill();
    m_oProcess.waitForFinished();
}

bool SimulatorProcess::finish()
{
    m_oProcess.waitForFinished();
    return m_oProcess.exitStatus() == QProcess::NormalExit && m_oProcess.exitCode() == 0;
}

void SimulatorProcess::sendSignal(int nSignal)
{
    ::kill(static_cast<pid_t>(m_oProcess.processId()), nSignal);
}

bool SimulatorProcess::setUp(const QString& strWorld, const QString& strArgument)
{
    m_pSteering->Clear().waitForFinished();
    QDBusPendingReply<> oReply = m_pSteering->SetWorld(strWorld, strArgument);
    oReply.waitForFinished();
    return !oReply.isError();
}

bool SimulatorProcess::setDocument(const QString& strJSON)
{
    QDBusPendingReply<> oReply = m_pSteering->SetDocument(strJSON);
    oReply.waitForFinished();
    return !oReply.isError();
}

QStringList SimulatorProcess::calls()
{
    return m_pSteering->Calls().value();
}
