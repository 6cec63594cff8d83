#include "support/childprocess.h"

#include <csignal>
#include <sys/prctl.h>

ChildProcess::ChildProcess()
{
    setProcessChannelMode(MergedChannels);
}

ChildProcess::~ChildProcess()
{
    kill();
    waitForFinished();
}

QString ChildProcess::startAndReadLine(const QString& strProgram, const QStringList& oArguments)
{
    start(strProgram, oArguments);
    return waitForStarted() ? nextLine() : QString();
}

QString ChildProcess::nextLine()
{
    while (!canReadLine()) {
        if (!waitForReadyRead(60000)) {
            return {};
        }
    }
    return QString::fromUtf8(readLine()).chopped(1);
}

bool ChildProcess::endsWell()
{
    closeWriteChannel();
    waitForFinished();
    return state() == NotRunning && exitStatus() == NormalExit && exitCode() == 0;
}

void ChildProcess::setupChildProcess()
{
    prctl(PR_SET_PDEATHSIG, SIGKILL);
}
