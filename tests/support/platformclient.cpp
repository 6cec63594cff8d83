#include "support/platformclient.h"

#include <utility>

PlatformClient::PlatformClient(const PrivateBus& oSystemBus, const PrivateBus& oSessionBus)
{
    start("env", {"DBUS_SYSTEM_BUS_ADDRESS=" + oSystemBus.address(),
                  "DBUS_SESSION_BUS_ADDRESS=" + oSessionBus.address(), PLATFORM_CLIENT});
    waitForStarted();
}

QString PlatformClient::act(const QString& strAction)
{
    write(strAction.toUtf8() + '\n');
    waitForBytesWritten();
    for (;;) {
        const QString strLine = nextLine();
        if (strLine.isNull() || strLine.startsWith("= ")) {
            return strLine.isNull() ? "gone" : strLine.mid(2);
        }
        m_oLog << strLine;
    }
}

QStringList PlatformClient::takeLog()
{
    return std::exchange(m_oLog, {});
}
