#include "support/platformclient.h"

#include <QProcessEnvironment>

#include <utility>

PlatformClient::PlatformClient(const PrivateBus& oSystemBus, const PrivateBus& oSessionBus)
{
    QProcessEnvironment oEnvironment = QProcessEnvironment::systemEnvironment();
    oEnvironment.insert(QStringLiteral("DBUS_SYSTEM_BUS_ADDRESS"), oSystemBus.address());
    oEnvironment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), oSessionBus.address());
    m_oProcess.setProcessEnvironment(oEnvironment);
    m_oProcess.start(QStringLiteral(PLATFORM_CLIENT), QStringList());
    m_oProcess.waitForStarted();
}

void PlatformClient::begin(const QString& strAction)
{
    m_oProcess.write(strAction.toUtf8() + '\n');
    m_oProcess.waitForBytesWritten();
}

QString PlatformClient::result()
{
    for (;;) {
        const QString strLine = m_oProcess.nextLine();
        if (strLine.isNull()) {
            return QStringLiteral("gone");
        }
        if (strLine.startsWith(QLatin1String("= "))) {
            return strLine.mid(2);
        }
        m_oLog << strLine;
    }
}

QString PlatformClient::act(const QString& strAction)
{
    begin(strAction);
    return result();
}

QStringList PlatformClient::takeLog()
{
    return std::exchange(m_oLog, {});
}

bool PlatformClient::finish()
{
    m_oProcess.closeWriteChannel();
    m_oProcess.waitForFinished();
    return m_oProcess.exitStatus() == QProcess::NormalExit && m_oProcess.exitCode() == 0;
}
