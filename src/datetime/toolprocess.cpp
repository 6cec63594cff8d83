#include "datetime/toolprocess.h"

#include <csignal>
#include <unistd.h>

namespace {

constexpr int s_nMaxOutput = 4096;
constexpr int s_nKilledMilliseconds = 50; // far more than a killed process takes, too little to be noticed

} // namespace

ToolProcess::ToolProcess(QObject* pParent) : QProcess(pParent), m_nOutputLeft(s_nMaxOutput)
{
    setProcessChannelMode(ForwardedErrorChannel);
    setStandardInputFile(nullDevice());
    setReadChannel(StandardOutput);
    setChildProcessModifier([] { setpgid(0, 0); });
}

ToolProcess::~ToolProcess()
{
    if (state() != NotRunning) {
        ToolProcess::close();
        setProcessState(NotRunning); // else the base class would wait for half a minute
    }
}

void ToolProcess::startScript(const QString& strScript)
{
    if (!strScript.isEmpty()) {
        start(QStringLiteral("/bin/sh"), {QStringLiteral("-c"), strScript});
    }
}

QString ToolProcess::takeText()
{
    const QByteArray oOutput = readAllStandardOutput().left(m_nOutputLeft);
    m_nOutputLeft -= static_cast<int>(oOutput.size());
    if (m_nOutputLeft == 0) {
        killGroup();
    }
    return QString::fromLatin1(oOutput.constData());
}

void ToolProcess::close()
{
    if (state() != NotRunning) {
        killGroup();
        waitForFinished(s_nKilledMilliseconds);
    }
    if (state() == NotRunning) {
        QProcess::close();
    }
}

// With the shell alone killed, the tool that it waits for would stay.
void ToolProcess::killGroup()
{
    const auto nGroup = static_cast<pid_t>(processId());
    if (nGroup > 0) {
        ::kill(-nGroup, SIGKILL);
    }
    kill(); // the child may not have come to its group yet
}
