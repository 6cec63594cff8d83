#pragma once

class QDate;
class QTime;

/**
 * The clocks of the device: the system clock and the battery-backed real-time clock (RTC).
 *
 * Times are seconds since the epoch, UTC. The functions need the right to set the clock; failures are
 * reported with perror() on standard error.
 */

/**
 * Sets both clocks to a local date and time, in the current time zone.
 *
 * Returns false for a time that does not exist or is not between 1970 and 2106-02-07 06:28:14 UTC, and if the
 * system clock could not be set.
 */
bool writeLocalTime(const QDate& oDate, const QTime& oTime);

/** Sets both clocks; returns false when the system clock could not be set. */
bool writeCurrentTime(long t);

/**
 * Sets the system clock, then the RTC.
 *
 * Returns 1 even if the RTC could not be set, and 0 if the system clock could not be set; the RTC is not
 * touched then.
 */
int LIN_SetClock(long t);

/** Sets the RTC ("/dev/rtc", else "/dev/misc/rtc") to a time, in UTC; always returns 1. */
int updateHWClock(long t);
