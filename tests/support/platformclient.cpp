#include "support/platformclient.h"

#include <QProcessEnvironment>

#include <utility>

PlatformClient::PlatformClient(const PrivateBus& oSystemBus, const PrivateBus& oSessionBus)
{
    QProcessEnvironment oEnvironment = QProcessEnvironment::systemEnvironment();
    oEnvironment.insert(QStringLiteral("DBUS_SYSTEM_BUS_ADDRESS"), oSystemBus.address());
    oEnvironment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), oSessionBus.address());
    setProcessEnvironment(oEnvironment);
    start(QStringLiteral(PLATFORM_CLIENT), QStringList());
    waitForStarted();
}

QString PlatformClient::act(const QString& strAction)
{
    write(strAction.toUtf8() + '\n');
    waitForBytesWritten();
    for (;;) {
        const QString strLine = nextLine();
        if (strLine.isNull()) {
            return QStringLiteral("gone");
        }
        if (strLine.startsWith(QLatin1String("= "))) {
            return strLine.mid(2);
        }
        m_oLog << strLine;
    }
}

QStringList PlatformClient::takeLog()
{
    return std::exchange(m_oLog, {});
}
