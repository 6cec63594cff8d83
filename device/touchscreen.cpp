#include "touchscreen.h"

#include <chrono>
#include <cstdio>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <linux/uinput.h>
#include <sstream>
#include <sys/ioctl.h>
#include <thread>
#include <unistd.h>

TouchScreen::TouchScreen(int nWidth, int nHeight, bool bMulti)
    : m_nDevice(open("/dev/uinput", O_WRONLY | O_CLOEXEC)), m_bMulti(bMulti)
{
    for (const int nType : {EV_SYN, EV_KEY, EV_ABS}) {
        ioctl(m_nDevice, UI_SET_EVBIT, nType);
    }
    ioctl(m_nDevice, UI_SET_KEYBIT, BTN_TOUCH);
    ioctl(m_nDevice, UI_SET_PROPBIT, INPUT_PROP_DIRECT);
    setAxis(ABS_X, nWidth - 1);
    setAxis(ABS_Y, nHeight - 1);
    if (m_bMulti) {
        setAxis(ABS_MT_SLOT, 1);
        setAxis(ABS_MT_TRACKING_ID, 65535);
        setAxis(ABS_MT_POSITION_X, nWidth - 1);
        setAxis(ABS_MT_POSITION_Y, nHeight - 1);
    }
    uinput_setup oSetup{};
    oSetup.id.bustype = BUS_VIRTUAL;
    std::strcpy(oSetup.name, "Touch screen");
    ioctl(m_nDevice, UI_DEV_SETUP, &oSetup);
    ioctl(m_nDevice, UI_DEV_CREATE);
}

TouchScreen::~TouchScreen()
{
    close(m_nDevice);
}

std::string TouchScreen::path() const
{
    char szName[64] = {};
    if (ioctl(m_nDevice, UI_GET_SYSNAME(sizeof szName), szName) < 0) {
        return {};
    }
    DIR* pFolder = opendir((std::string("/sys/devices/virtual/input/") + szName).c_str());
    std::string strPath;
    for (const dirent* pEntry = pFolder ? readdir(pFolder) : nullptr; pEntry; pEntry = readdir(pFolder)) {
        if (std::strncmp(pEntry->d_name, "event", 5) == 0) {
            strPath = std::string("/dev/input/") + pEntry->d_name;
        }
    }
    if (pFolder) {
        closedir(pFolder);
    }
    return strPath;
}

void TouchScreen::press(int nFinger, int nX, int nY)
{
    const bool bTouched = m_bDown[0] || m_bDown[1];
    if (!m_bDown[nFinger]) { // no finger hits the same place twice, and the kernel drops what does not change
        nX += nX == m_nX[nFinger] ? 1 : 0;
        nY += nY == m_nY[nFinger] ? 1 : 0;
    }
    m_nX[nFinger] = nX;
    m_nY[nFinger] = nY;
    if (m_bMulti) {
        emit(EV_ABS, ABS_MT_SLOT, nFinger);
        if (!m_bDown[nFinger]) {
            emit(EV_ABS, ABS_MT_TRACKING_ID, m_nContacts++ & 0xffff);
        }
        emit(EV_ABS, ABS_MT_POSITION_X, nX);
        emit(EV_ABS, ABS_MT_POSITION_Y, nY);
    }
    if (nFinger == 0) {
        emit(EV_ABS, ABS_X, nX);
        emit(EV_ABS, ABS_Y, nY);
    }
    m_bDown[nFinger] = true;
    if (!bTouched) {
        emit(EV_KEY, BTN_TOUCH, 1);
    }
    emit(EV_SYN, SYN_REPORT, 0);
}

void TouchScreen::lift(int nFinger)
{
    m_bDown[nFinger] = false;
    if (m_bMulti) {
        emit(EV_ABS, ABS_MT_SLOT, nFinger);
        emit(EV_ABS, ABS_MT_TRACKING_ID, -1);
    }
    if (!m_bDown[0] && !m_bDown[1]) {
        emit(EV_KEY, BTN_TOUCH, 0);
    }
    emit(EV_SYN, SYN_REPORT, 0);
}

void TouchScreen::play(const std::string& strSteps)
{
    std::istringstream oSteps(strSteps);
    for (std::string strStep; oSteps >> strStep;) {
        int nFinger = 0;
        int nX = 0;
        int nY = 0;
        if (std::sscanf(strStep.c_str(), "%1d:%d,%d", &nFinger, &nX, &nY) == 3) {
            press(nFinger & 1, nX, nY);
        } else if (strStep.find(":up") != std::string::npos) {
            lift(strStep[0] & 1);
        } else {
            std::this_thread::sleep_for(std::chrono::milliseconds(std::stoi(strStep)));
        }
    }
}

void TouchScreen::emit(int nType, int nCode, int nValue) const
{
    input_event oEvent{};
    oEvent.type = static_cast<__u16>(nType);
    oEvent.code = static_cast<__u16>(nCode);
    oEvent.value = nValue;
    if (write(m_nDevice, &oEvent, sizeof oEvent) < 0) {
        std::perror("uinput");
    }
}

void TouchScreen::setAxis(int nCode, int nMaximum) const
{
    uinput_abs_setup oAxis{};
    oAxis.code = static_cast<__u16>(nCode);
    oAxis.absinfo.maximum = nMaximum;
    ioctl(m_nDevice, UI_ABS_SETUP, &oAxis);
}
