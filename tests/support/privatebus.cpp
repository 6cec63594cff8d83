#include "support/privatebus.h"

#include <QFile>

PrivateBus::PrivateBus(int nReplyTimeoutMs)
{
    const QString strConfiguration =
        "<busconfig><type>session</type><listen>%1</listen><auth>EXTERNAL</auth><policy context='default'>"
        "<allow send_destination='*' eavesdrop='true'/><allow eavesdrop='true'/><allow own='*'/></policy>"
        "<limit name='reply_timeout'>%2</limit></busconfig>";
    QFile oFile(m_oFolder.filePath("bus.conf"));
    oFile.open(QIODevice::WriteOnly);
    oFile.write(strConfiguration.arg(address()).arg(nReplyTimeoutMs).toUtf8());
}

bool PrivateBus::start()
{
    const QString strConfiguration = "--config-file=" + m_oFolder.filePath("bus.conf");
    return !m_oDaemon.startAndReadLine("dbus-daemon", {strConfiguration, "--print-address"}).isEmpty();
}

void PrivateBus::stop()
{
    m_oDaemon.terminate();
    m_oDaemon.waitForFinished();
}

QString PrivateBus::address() const
{
    return "unix:path=" + m_oFolder.filePath("socket");
}
