#include "platform/ovikplatform.h"

bool OVIKPlatform::m_bInstanceFlag = false;
OVIKPlatform* OVIKPlatform::m_pInstance = nullptr;

OVIKPlatform* OVIKPlatform::getInstance()
{
    if (!m_bInstanceFlag) {
        m_pInstance = new OVIKPlatform;
        m_bInstanceFlag = true;
    }
    return m_pInstance;
}

void OVIKPlatform::SetDeviceNameAsString(QString strName)
{
    m_deviceName = strName;
}

QString OVIKPlatform::GetDeviceNameAsString()
{
    return m_deviceName;
}
