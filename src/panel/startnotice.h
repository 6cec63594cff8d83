#pragma once

/**
 * Writes the start-up notice, the 19 bytes "paintEvent finished", into the named pipe "/tmp/tarnixUI".
 *
 * Creates the pipe with mode 0777 less the umask if nothing has its name, and never removes it. A regular
 * file of that name gets the bytes at its start. Never waits for a reader and follows no symbolic link. Logs
 * one warning on success and one on each failure.
 * @return true if the caller should try again later: nobody reads, the reader has just gone, or the pipe is
 * full; false if the notice is written or given up
 */
bool writeStartNotice();
