#pragma once

/**
 * Writes the start-up notice, the 19 bytes "paintEvent finished", into the named pipe "/tmp/tarnixUI".
 *
 * Creates the pipe with mode 0777 minus the umask if the path does not exist, and never removes it.
 * Overwrites the start of a regular file at that path. Never waits for a reader and never follows a symbolic
 * link. Logs one warning on success and one on each failure.
 * @return true if the caller should retry later: there is no reader, the reader has just closed the pipe, or
 * the pipe is full; false if the notice was written or cannot be written
 */
bool writeStartNotice();
