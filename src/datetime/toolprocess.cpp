#include "datetime/toolprocess.h"

#include <csignal>
#include <unistd.h>

namespace {

constexpr int s_nMaxOutput = 4096;
constexpr int s_nKilledMilliseconds = 50; // long enough for a killed process, too short to be noticed

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
    end();
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

void ToolProcess::end()
{
    if (state() == NotRunning) {
        return;
    }
    killGroup();
    if (!waitForFinished(s_nKilledMilliseconds)) {
        setProcessState(NotRunning); // or the base class would wait half a minute for it
    }
}

// Killing the shell alone would leave the tool that it waits for.
void ToolProcess::killGroup()
{
    const auto nGroup = static_cast<pid_t>(processId());
    if (nGroup > 0) {
        ::kill(-nGroup, SIGKILL);
    }
    kill(); // the child may not have joined its group yet
}
