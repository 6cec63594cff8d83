#pragma once

/** The configuration of the NTP daemon. */
namespace ntpconfiguration {

/** Returns whether there is a generated "/etc/kadconfig-ntp.conf"; logs if there is none. */
bool isGenerated();

/**
 * Replaces the daemon's "/etc/ntp.conf" by a copy of the generated file, in one step: on a failure the former
 * file stays whole.
 *
 * Returns whether the daemon's file is a copy of a generated file that is not empty; else logs why.
 */
bool install();

} // namespace ntpconfiguration
