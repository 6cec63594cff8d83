#include "panel/startnotice.h"

#include <QDebug>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr char s_szPipePath[] = "/tmp/tarnixUI";
constexpr char s_szMessage[] = "paintEvent finished";
constexpr ssize_t s_nMessageSize = sizeof(s_szMessage) - 1;

bool isFifo(const char* szPath)
{
    struct stat oStatus = {};
    return lstat(szPath, &oStatus) == 0 && S_ISFIFO(oStatus.st_mode);
}

} // namespace

bool writeStartNotice()
{
    int nError = mkfifo(s_szPipePath, 0777) == 0 ? 0 : errno;
    if (nError != 0 && nError != EEXIST) {
        qWarning() << "Failed to create named pipe for writing 1" << strerror(nError);
        return false;
    }
    const int nDescriptor = open(s_szPipePath, O_WRONLY | O_NONBLOCK | O_NOFOLLOW | O_CLOEXEC);
    if (nDescriptor < 0) {
        nError = errno;
        if (nError == ENXIO && isFifo(s_szPipePath)) {
            return true; // nobody has it open for reading yet
        }
        qWarning() << "Failed to open named pipe for writing 2" << strerror(nError);
        return false;
    }
    // Kept, see docs/compatibility.md
    const bool bWritten = write(nDescriptor, s_szMessage, s_nMessageSize) == s_nMessageSize;
    nError = errno;
    close(nDescriptor);
    if (bWritten) {
        qWarning() << "writeToNamedPipe"
                   << "Written message to named pipe successfully";
        return false;
    }
    if (nError != EAGAIN) {
        qWarning() << "Failed to write to named pipe" << strerror(nError);
    }
    return nError == EAGAIN || nError == EPIPE; // the pipe is full, or the reader has just gone
}
