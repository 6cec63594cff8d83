#include "support/privatebus.h"

#include <QFile>

PrivateBus::PrivateBus(int nReplyTimeoutMs)
{
    QFile oFile(m_oFolder.filePath(QStringLiteral("bus.conf")));
    if (!oFile.open(QIODevice::WriteOnly)) {
        return;
    }
    const QString strConfiguration = QStringLiteral(
        "<busconfig><type>session</type><listen>%1</listen><auth>EXTERNAL</auth><policy context='default'>"
        "<allow send_destination='*' eavesdrop='true'/><allow eavesdrop='true'/><allow own='*'/></policy>"
        "<limit name='reply_timeout'>%2</limit></busconfig>");
    oFile.write(strConfiguration.arg(address()).arg(nReplyTimeoutMs).toUtf8());
}

bool PrivateBus::start()
{
    const QString strFile = m_oFolder.filePath(QStringLiteral("bus.conf"));
    const QStringList oArguments = {QStringLiteral("--config-file=") + strFile, QStringLiteral("--nofork"),
                                    QStringLiteral("--nopidfile"), QStringLiteral("--print-address")};
    return !m_oDaemon.startAndReadLine(QStringLiteral("dbus-daemon"), oArguments).isEmpty();
}

void PrivateBus::stop()
{
    m_oDaemon.terminate();
    m_oDaemon.waitForFinished();
}

QString PrivateBus::address() const
{
    return QStringLiteral("unix:path=") + m_oFolder.filePath(QStringLiteral("socket"));
}
