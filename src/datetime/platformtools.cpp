#include "datetime/platformtools.h"

#include "datetime/timezones.h"
#include "datetime/toolprocess.h"

#include <QDebug>
#include <QFile>
#include <QFileInfo>

namespace {

constexpr char s_szTimeZoneGenerator[] = "/usr/bin/kadconfig-gen-timezones.sh";
constexpr char s_szTimeZoneFile[] = "/etc/timezone";
constexpr char s_szLocalTime[] = "/etc/localtime";
constexpr char s_szZoneFiles[] = "/usr/share/zoneinfo/posix/";
constexpr qint64 s_nMaxTimeZoneName = 4096;
constexpr int s_nMaxTimeZones = 256 * 1024; // far more than any device has

QString scriptText(const char* szResource)
{
    QFile oFile(szResource);
    return oFile.open(QIODevice::ReadOnly | QIODevice::Text) ? QString(oFile.readAll()) : QString();
}

} // namespace

void platformtools::start(ToolProcess& oTool, eProcessType eType, const QString& strZone)
{
    switch (eType) {
    case eProcessType_GetTimeZoneList:
        oTool.setMaxOutput(s_nMaxTimeZones);
        oTool.start(s_szTimeZoneGenerator, QStringList());
        break;
    case eProcessType_GetCurrentTimeZone:
        oTool.start(QStringLiteral("cat"), {s_szTimeZoneFile});
        break;
    case eProcessType_SetCurrentTimeZone:
        // Left by an earlier name that led to a folder: the script would create its link inside it.
        if (QFileInfo(s_szLocalTime).isDir()) {
            QFile::remove(s_szLocalTime);
        }
        // Kept, see docs/compatibility.md
        oTool.startScript(timezones::script(scriptText(":/setTimeZone.sh"), strZone));
        break;
    case eProcessType_GetNTPDateTimeStatus:
        oTool.startScript(scriptText(":/getNTPStatus.sh"));
        break;
    case eProcessType_SetNTPSettings:
        oTool.startScript(scriptText(":/setNTPSettings.sh"));
        break;
    case eProcessType_SetCurrentDateTime:
        break;
    }
}

bool platformtools::isTimeZoneInForce(const QString& strZone)
{
    QFile oNameFile(s_szTimeZoneFile);
    const bool bNamed = QFileInfo(oNameFile).isFile() && oNameFile.open(QIODevice::ReadOnly) &&
                        oNameFile.read(s_nMaxTimeZoneName).trimmed() == strZone.trimmed().toLocal8Bit();
    if (!bNamed) {
        qWarning() << "setTimeZone failed:" << s_szTimeZoneFile << "does not name" << strZone;
        return false;
    }
    const QFileInfo oZoneFile(s_szLocalTime);
    const bool bLinked = oZoneFile.symLinkTarget() == s_szZoneFiles + strZone.trimmed();
    if (!bLinked || !oZoneFile.isFile() || !oZoneFile.isReadable()) {
        qWarning() << "setTimeZone failed:" << s_szLocalTime << "leads to no readable file for" << strZone;
        return false;
    }
    return true;
}
