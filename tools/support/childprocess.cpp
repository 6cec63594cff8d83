#include "support/childprocess.h"

ChildProcess::~ChildProcess()
{
    kill();
    waitForFinished();
}

QString ChildProcess::startAndReadLine(const QString& strProgram, const QStringList& oArguments)
{
    start(strProgram, oArguments);
    return nextLine();
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
