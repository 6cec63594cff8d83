#include "datetime/ntpstatus.h"

#include <QCoreApplication>
#include <QRegularExpression>
#include <QStringList>

namespace {

constexpr int s_nWhenColumn = 4;
constexpr int s_nReachColumn = 6;
constexpr char s_szContext[] = "DateTimeDialog";

} // namespace

bool ntpstatus::readPeer(const QString& strLine, sNTPInfo& oInfo)
{
    static const QRegularExpression s_oBlanks(QStringLiteral(" +"));
    const QStringList oColumns = strLine.trimmed().split(s_oBlanks);
    if (oColumns.size() <= s_nReachColumn || oColumns[s_nWhenColumn] == QLatin1String("-")) {
        return false;
    }
    oInfo.m_strLastUpdate = oColumns[s_nWhenColumn];
    oInfo.m_strStatus = oColumns[s_nReachColumn];
    return true;
}

// Kept, see docs/compatibility.md
QString ntpstatus::text(const sNTPInfo& oInfo)
{
    const QString& strLast = oInfo.m_strLastUpdate;
    if (strLast.isEmpty()) {
        return oInfo.m_strStatus == QLatin1String("377")
                   ? QString()
                   : QCoreApplication::translate(s_szContext, "Connection error");
    }
    if (strLast.endsWith('h')) {
        return QCoreApplication::translate(s_szContext, "Last sync:%1 hours ago").arg(strLast);
    }
    if (strLast.endsWith('d')) {
        return QCoreApplication::translate(s_szContext, "Last sync:%1 days ago").arg(strLast);
    }
    return QCoreApplication::translate(s_szContext, "Last sync:%1 secs ago").arg(strLast);
}
