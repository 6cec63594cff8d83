#include "panel/configurationapp.h"

#include <QFileInfo>
#include <QProcess>
#include <fcntl.h>

namespace {

constexpr int s_nFirstDescriptor = 3;
constexpr int s_nLastDescriptor = 254;
constexpr char s_szApplication[] = "/usr/bin/kadconfig-app";
constexpr char s_szCommand[] =
    "/bin/bash -c \"QTDIR= QT_PLUGIN_PATH= LD_LIBRARY_PATH= /usr/bin/kadconfig-app &>/dev/null\"";

} // namespace

void launchConfigurationApp()
{
    // Kept, see docs/compatibility.md
    for (int nDescriptor = s_nFirstDescriptor; nDescriptor <= s_nLastDescriptor; ++nDescriptor) {
        fcntl(nDescriptor, F_SETFD, FD_CLOEXEC);
    }
    if (!QFileInfo::exists(s_szApplication)) {
        return;
    }
    QStringList oArguments = QProcess::splitCommand(QString(s_szCommand));
    QProcess oProcess;
    oProcess.setProgram(oArguments.takeFirst());
    oProcess.setArguments(oArguments);
    // The child must neither read the runtime's commands nor hold the runtime's end of our output open.
    oProcess.setStandardInputFile(QProcess::nullDevice());
    oProcess.setStandardOutputFile(QProcess::nullDevice());
    oProcess.setStandardErrorFile(QProcess::nullDevice());
    oProcess.startDetached();
}
