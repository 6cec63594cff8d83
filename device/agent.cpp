#include "touchscreen.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <iostream>
#include <linux/input.h>
#include <memory>
#include <poll.h>
#include <string>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

// The emulator's hand inside the emulated device: it is the finger on its touch screen, runs commands, and
// asks the probe.
//
//   agent PORT WIDTH HEIGHT single|multi
//
// Each line on the port is a request: "touch STEPS", "run COMMAND", "probe LINE", and "plug WIDTH HEIGHT
// single|multi", which unplugs the touch screen and plugs another one. Each reply is a line with a status and
// a number of bytes, then these bytes. A mouse on the emulator's window is a finger, too.

namespace {

constexpr int s_nTabletRange = 32768;
constexpr char s_szTouchScreen[] = "/dev/input/touchscreen";

struct sReply
{
    int nStatus = 0;
    std::string strText;
};

sReply run(const std::string& strCommand)
{
    sReply sResult;
    FILE* pPipe = popen(("exec 2>&1; " + strCommand).c_str(), "re");
    if (!pPipe) {
        return {errno, std::strerror(errno)};
    }
    std::array<char, 65536> oBuffer{};
    for (size_t nRead = 1; nRead > 0;) {
        nRead = std::fread(oBuffer.data(), 1, oBuffer.size(), pPipe);
        sResult.strText.append(oBuffer.data(), nRead);
    }
    sResult.nStatus = pclose(pPipe);
    return sResult;
}

sReply askProbe(const std::string& strLine)
{
    sockaddr_un oAddress{AF_UNIX, "/tmp/probe"};
    const int nSocket = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sReply sResult;
    const std::string strRequest = strLine + '\n';
    if (connect(nSocket, reinterpret_cast<sockaddr*>(&oAddress), sizeof oAddress) != 0 ||
        write(nSocket, strRequest.data(), strRequest.size()) < 0) {
        sResult = {errno, std::strerror(errno)};
    }
    std::array<char, 65536> oBuffer{};
    while (sResult.nStatus == 0 && (sResult.strText.empty() || sResult.strText.back() != '\n')) {
        const ssize_t nRead = read(nSocket, oBuffer.data(), oBuffer.size());
        if (nRead <= 0) {
            sResult.nStatus = EPIPE; // the panel has ended
        } else {
            sResult.strText.append(oBuffer.data(), static_cast<size_t>(nRead));
        }
    }
    close(nSocket);
    return sResult;
}

// A touch screen and its name among the devices.
struct sPlug
{
    std::unique_ptr<TouchScreen> pScreen;
    int nWidth = 0;
    int nHeight = 0;
};

// Takes the place of the touch screen that was there.
bool plug(const std::string& strScreen, sPlug& oPlug)
{
    char szKind[8] = {};
    if (std::sscanf(strScreen.c_str(), "%d %d %7s", &oPlug.nWidth, &oPlug.nHeight, szKind) != 3) {
        return false;
    }
    oPlug.pScreen.reset();
    unlink(s_szTouchScreen);
    oPlug.pScreen =
        std::make_unique<TouchScreen>(oPlug.nWidth, oPlug.nHeight, std::strcmp(szKind, "multi") == 0);
    return symlink(oPlug.pScreen->path().c_str(), s_szTouchScreen) == 0;
}

sReply answer(const std::string& strRequest, sPlug& oPlug)
{
    const size_t nBlank = strRequest.find(' ');
    const std::string strVerb = strRequest.substr(0, nBlank);
    const std::string strRest = nBlank == std::string::npos ? "" : strRequest.substr(nBlank + 1);
    if (strVerb == "touch") {
        oPlug.pScreen->play(strRest);
        return {};
    }
    if (strVerb == "plug") {
        return {plug(strRest, oPlug) ? 0 : EINVAL, {}};
    }
    return strVerb == "run" ? run(strRest) : askProbe(strRest);
}

// Opens the tablet that stands for a mouse on the emulator's window, for nobody else; -1 if there is none.
int openTablet()
{
    for (int i = 0; i < 16; ++i) {
        const int nDevice = open(("/dev/input/event" + std::to_string(i)).c_str(), O_RDONLY | O_CLOEXEC);
        char szName[64] = {};
        if (nDevice >= 0 && ioctl(nDevice, EVIOCGNAME(sizeof szName - 1), szName) > 0 &&
            std::strstr(szName, "Tablet")) {
            ioctl(nDevice, EVIOCGRAB, 1);
            return nDevice;
        }
        close(nDevice);
    }
    return -1;
}

// Whether the touch screen is mounted turned, as the panel's settings say; the tablet never is.
bool isTurned()
{
    const char* szPlugins = std::getenv("QT_QPA_GENERIC_PLUGINS");
    return szPlugins && std::strstr(szPlugins, ":rotate=90");
}

// Turns what the mouse does into what a finger does.
void follow(int nTablet, const sPlug& oPlug)
{
    static int s_nX = 0;
    static int s_nY = 0;
    static bool s_bDown = false;
    input_event oEvent{};
    if (read(nTablet, &oEvent, sizeof oEvent) != sizeof oEvent) {
        return;
    }
    if (oEvent.type == EV_ABS) {
        (oEvent.code == ABS_X ? s_nX : s_nY) = oEvent.value;
    } else if (oEvent.type == EV_KEY && oEvent.code == BTN_LEFT) {
        s_bDown = oEvent.value != 0;
        if (!s_bDown) {
            oPlug.pScreen->lift(0);
        }
    } else if (oEvent.type == EV_SYN && s_bDown) {
        const int nX = isTurned() ? s_nY : s_nX;
        const int nY = isTurned() ? s_nTabletRange - 1 - s_nX : s_nY;
        oPlug.pScreen->press(0, nX * oPlug.nWidth / s_nTabletRange, nY * oPlug.nHeight / s_nTabletRange);
    }
}

// Takes what has come on the port, and answers each complete line.
bool serve(int nPort, std::string& strInput, sPlug& oPlug)
{
    std::array<char, 4096> oBuffer{};
    const ssize_t nRead = read(nPort, oBuffer.data(), oBuffer.size());
    if (nRead <= 0) {
        return false;
    }
    strInput.append(oBuffer.data(), static_cast<size_t>(nRead));
    for (size_t nEnd = strInput.find('\n'); nEnd != std::string::npos; nEnd = strInput.find('\n')) {
        const sReply sResult = answer(strInput.substr(0, nEnd), oPlug);
        strInput.erase(0, nEnd + 1);
        const std::string strReply = std::to_string(sResult.nStatus) + ' ' +
                                     std::to_string(sResult.strText.size()) + '\n' + sResult.strText;
        for (size_t nDone = 0; nDone < strReply.size();) {
            const ssize_t nWritten = write(nPort, strReply.data() + nDone, strReply.size() - nDone);
            if (nWritten <= 0) {
                return false;
            }
            nDone += static_cast<size_t>(nWritten);
        }
    }
    return true;
}

} // namespace

int main(int nArguments, char** pArguments)
{
    if (nArguments != 5) {
        std::cerr << "agent PORT WIDTH HEIGHT single|multi\n";
        return 2;
    }
    const int nTablet = openTablet();
    sPlug oPlug;
    if (!plug(std::string(pArguments[2]) + ' ' + pArguments[3] + ' ' + pArguments[4], oPlug) ||
        daemon(1, 1) != 0) {
        std::perror("agent");
        return 1;
    }
    const int nPort = open(pArguments[1], O_RDWR | O_CLOEXEC);
    std::array<pollfd, 2> oFiles{{{nPort, POLLIN, 0}, {nTablet, POLLIN, 0}}};
    std::string strInput;
    while (poll(oFiles.data(), oFiles.size(), -1) >= 0) {
        if (oFiles[1].revents) {
            follow(nTablet, oPlug);
        }
        if (oFiles[0].revents && !serve(nPort, strInput, oPlug)) {
            return 0;
        }
    }
    return 1;
}
