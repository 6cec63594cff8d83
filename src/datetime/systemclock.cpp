#include "datetime/systemclock.h"

#include <QDateTime>
#include <cstdio>
#include <ctime>
#include <fcntl.h>
#include <limits>
#include <linux/rtc.h>
#include <sys/ioctl.h>
#include <sys/time.h>
#include <unistd.h>

namespace {

constexpr qint64 s_nEndSeconds = std::numeric_limits<quint32>::max();
constexpr char s_szRTCPath[] = "/dev/rtc";
constexpr char s_szOtherRTCPath[] = "/dev/misc/rtc";

int openRTC()
{
    int nDescriptor = open(s_szRTCPath, O_WRONLY | O_CLOEXEC);
    if (nDescriptor < 0) {
        nDescriptor = open(s_szOtherRTCPath, O_WRONLY | O_CLOEXEC);
    }
    if (nDescriptor < 0) {
        perror("Could not access RTC");
    }
    return nDescriptor;
}

rtc_time rtcTime(const tm& oTime)
{
    rtc_time oRTCTime{};
    oRTCTime.tm_sec = oTime.tm_sec;
    oRTCTime.tm_min = oTime.tm_min;
    oRTCTime.tm_hour = oTime.tm_hour;
    oRTCTime.tm_mday = oTime.tm_mday;
    oRTCTime.tm_mon = oTime.tm_mon;
    oRTCTime.tm_year = oTime.tm_year;
    oRTCTime.tm_wday = oTime.tm_wday;
    oRTCTime.tm_yday = oTime.tm_yday;
    oRTCTime.tm_isdst = oTime.tm_isdst;
    return oRTCTime;
}

} // namespace

bool writeLocalTime(const QDate& oDate, const QTime& oTime)
{
    const QDateTime oDateTime(oDate, oTime);
    const qint64 nSeconds = oDateTime.toSecsSinceEpoch();
    // A time that summer time leaves out is invalid; newer versions of Qt move it instead.
    return oDateTime.isValid() && oDateTime.time() == oTime && nSeconds >= 0 && nSeconds < s_nEndSeconds &&
           writeCurrentTime(static_cast<long>(nSeconds));
}

bool writeCurrentTime(long t)
{
    return LIN_SetClock(t) != 0;
}

int LIN_SetClock(long t)
{
    const timeval oTime{t, 0};
    if (settimeofday(&oTime, nullptr) != 0) {
        perror("Error setting system time");
        return 0;
    }
    updateHWClock(t);
    return 1;
}

int updateHWClock(long t)
{
    const int nDescriptor = openRTC();
    const time_t nTime = t;
    tm oTime{};
    // Without an RTC the descriptor is -1, so ioctl() fails and is reported as well.
    const bool bConverted = gmtime_r(&nTime, &oTime) != nullptr;
    const rtc_time oRTCTime = rtcTime(oTime);
    if (!bConverted || ioctl(nDescriptor, RTC_SET_TIME, &oRTCTime) != 0) {
        perror("Could not set the RTC time");
    }
    if (nDescriptor >= 0) {
        close(nDescriptor);
    }
    return 1;
}
