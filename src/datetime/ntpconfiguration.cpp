#include "datetime/ntpconfiguration.h"

#include <QDebug>
#include <QFile>
#include <QTemporaryFile>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <unistd.h>

namespace {

constexpr char s_szGenerated[] = "/etc/kadconfig-ntp.conf";
constexpr char s_szOfDaemon[] = "/etc/ntp.conf";
constexpr char s_szTemporary[] = "/etc/ntp.conf.XXXXXX"; // renaming needs the same file system
constexpr qint64 s_nBlockSize = 65536;

/** Copies the rest of a file; returns false if it cannot be read or written to its end. */
bool copyRest(QFile& oFrom, QFile& oTo)
{
    QByteArray oBlock;
    while (!oBlock.isEmpty() || !oFrom.atEnd()) {
        if (oBlock.isEmpty()) {
            oBlock = oFrom.read(s_nBlockSize);
        }
        const qint64 nWritten = oTo.write(oBlock); // less than all when the disk becomes full
        if (nWritten <= 0) {
            return false;
        }
        oBlock = oBlock.mid(static_cast<int>(nWritten));
    }
    return oTo.flush();
}

bool isSynced(const QFile& oFile)
{
    return fsync(oFile.handle()) == 0;
}

/** Replaces the daemon's file by a copy of the generated one; returns the error, empty for none. */
QString replace(QFile& oGenerated)
{
    QTemporaryFile oCopy(s_szTemporary);
    if (!oCopy.open()) {
        return oCopy.errorString();
    }
    if (!copyRest(oGenerated, oCopy)) {
        return oGenerated.error() != QFileDevice::NoError ? oGenerated.errorString() : oCopy.errorString();
    }
    // A temporary file is private; the daemon may run as another user.
    if (!oCopy.setPermissions(oGenerated.permissions()) || !isSynced(oCopy) ||
        std::rename(QFile::encodeName(oCopy.fileName()).constData(), s_szOfDaemon) != 0) {
        return QString::fromLocal8Bit(std::strerror(errno));
    }
    return {};
}

} // namespace

bool ntpconfiguration::isGenerated()
{
    if (!QFile::exists(s_szGenerated)) {
        qWarning() << "File missing: " << s_szGenerated;
        return false;
    }
    return true;
}

bool ntpconfiguration::install()
{
    QFile oGenerated(s_szGenerated);
    const QString strError =
        oGenerated.open(QIODevice::ReadOnly) ? replace(oGenerated) : oGenerated.errorString();
    if (!strError.isEmpty()) {
        qWarning() << "saveNTPSettings failed:" << s_szOfDaemon << "stays as it is:" << qPrintable(strError);
        return false;
    }
    if (oGenerated.size() == 0) {
        qWarning() << "saveNTPSettings failed:" << s_szGenerated << "is empty";
        return false;
    }
    return true;
}
