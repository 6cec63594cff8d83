#pragma once

/**
 * Starts the platform's configuration application, "/usr/bin/kadconfig-app", as a process of its own.
 *
 * The application gets the null device as its three streams and none of this process's other descriptors from
 * 3 to 254. It is not watched: each call starts another one. Does nothing if the file does not exist; a
 * failed start is not reported.
 */
void launchConfigurationApp();
