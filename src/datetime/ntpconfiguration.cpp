#include "datetime/ntpconfiguration.h"

#include <QDebug>
#include <QFile>

namespace {

constexpr char s_szGenerated[] = "/etc/kadconfig-ntp.conf";
constexpr char s_szOfDaemon[] = "/etc/ntp.conf";

} // namespace

bool ntpconfiguration::install()
{
    if (!QFile::exists(s_szGenerated)) {
        qWarning() << "File missing: " << s_szGenerated;
        return false;
    }
    if (QFile::exists(s_szOfDaemon)) {
        QFile::remove(s_szOfDaemon);
    }
    QFile::copy(s_szGenerated, s_szOfDaemon);
    return true;
}
