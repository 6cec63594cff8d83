#include "clocks.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/time.h>

QString clocks::g_strFault;
QStringList clocks::g_oRequests;

static int g_nRTC = -1;

extern "C" {
int __real_open(const char* szPath, int nFlags, mode_t nMode);
int __real_ioctl(int nDescriptor, unsigned long nRequest, void* pArgument);
int __real_close(int nDescriptor);

int __wrap_settimeofday(const timeval* pTime, const void* pZone)
{
    clocks::g_oRequests +=
        QString("set %1 %2 %3").arg(pTime->tv_sec).arg(pTime->tv_usec).arg(pZone != nullptr);
    errno = EPERM;
    return clocks::g_strFault == "refused" ? -1 : 0;
}

int __wrap_open(const char* szPath, int nFlags, mode_t nMode)
{
    if (!QByteArray(szPath).endsWith("/rtc")) {
        return __real_open(szPath, nFlags, nMode);
    }
    clocks::g_oRequests += QString("open %1 %2").arg(szPath).arg((nFlags & O_ACCMODE) == O_WRONLY);
    errno = ENOENT;
    const QString strRTC = clocks::g_strFault == "other RTC" ? "/dev/misc/rtc" : "/dev/rtc";
    const bool bThere = clocks::g_strFault != "no RTC" && szPath == strRTC;
    return g_nRTC = bThere ? __real_open("/dev/null", O_WRONLY, 0) : -1;
}

int __wrap_ioctl(int nDescriptor, unsigned long nRequest, void* pArgument)
{
    if (nRequest != 0x4024700A) {
        return __real_ioctl(nDescriptor, nRequest, pArgument);
    }
    QString strRequest = QString("ioctl %1:").arg(nDescriptor == g_nRTC);
    for (int i = 0; i < 9; ++i) {
        strRequest += ' ' + QString::number(static_cast<const int*>(pArgument)[i]);
    }
    clocks::g_oRequests += strRequest;
    errno = nDescriptor < 0 ? EBADF : EINVAL;
    return nDescriptor < 0 || clocks::g_strFault == "stuck RTC" ? -1 : 0;
}

int __wrap_close(int nDescriptor)
{
    if (nDescriptor == g_nRTC) {
        clocks::g_oRequests += "close";
    }
    return __real_close(nDescriptor);
}

void __wrap_perror(const char* szText)
{
    clocks::g_oRequests += QString("%1: %2").arg(szText, strerror(errno));
}
}
