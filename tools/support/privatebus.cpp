#include "support/privatebus.h"

#include <QFile>

bool PrivateBus::start(int nReplyTimeoutMs)
{
    const QString strConfiguration =
        "<busconfig><type>session</type><listen>%1</listen><auth>EXTERNAL</auth><policy context='default'>"
        "<allow send_destination='*' eavesdrop='true'/><allow eavesdrop='true'/><allow own='*'/></policy>"
        "<limit name='reply_timeout'>%2</limit></busconfig>";
    QFile oFile(m_oFolder.filePath("bus.conf"));
    oFile.open(QIODevice::WriteOnly);
    oFile.write(strConfiguration.arg(address()).arg(nReplyTimeoutMs).toUtf8());
    oFile.close();
    const QStringList oArguments = {"--config-file=" + oFile.fileName(), "--print-address"};
    return !m_oDaemon.startAndReadLine("dbus-daemon", oArguments).isEmpty();
}

void PrivateBus::stop()
{
    m_oDaemon.terminate();
    m_oDaemon.waitForFinished();
}
