#pragma once

/**
 * Starts the platform's configuration application, "/usr/bin/kadconfig-app", as a separate process.
 *
 * Its standard streams are the null device, and it inherits none of the descriptors 3 to 254. The process is
 * not tracked: each call starts another one. Does nothing if the file does not exist; a failed start is not
 * reported.
 */
void launchConfigurationApp();
