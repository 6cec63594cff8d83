#pragma once

/** The configuration of the NTP daemon. */
namespace ntpconfiguration {

/**
 * Replaces the daemon's "/etc/ntp.conf" by a copy of the generated "/etc/kadconfig-ntp.conf".
 *
 * Returns false if there is none, which is logged; returns true also if the copy failed.
 */
bool install();

} // namespace ntpconfiguration
