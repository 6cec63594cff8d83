#include "device.h"

#include <algorithm>
#include <iterator>

Device::Device(QString strDocument, int nLeaseDelayMs)
    : m_oNetwork(nLeaseDelayMs, this), m_strDocument(std::move(strDocument))
{
}

bool Device::clear()
{
    m_oServices = {{QStringLiteral("ntpd"), sService()}};
    m_oSystem = {21, 11, 26, {0x01, 0x02, 0x03}, {'P', 'L', 'C', '0', '7'}, 0x10, 0x20, {0x51, 0x4e}, 7};
    m_oMainOS = {2, 21, 11, 26, {}};
    setVersion(QStringLiteral("MAINOS-1.2-010203-00"));
    return m_oNetwork.load(m_strDocument);
}

void Device::setVersion(const QString& strVersion)
{
    const QByteArray oText = strVersion.toLatin1().leftJustified(sizeof m_oMainOS.version, '\0', true);
    std::copy(oText.cbegin(), oText.cend(), std::begin(m_oMainOS.version));
}
