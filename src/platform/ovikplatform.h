#pragma once

#include <QObject>
#include <QString>

/**
 * The process-wide client of the platform service.
 *
 * Used on the GUI thread only.
 */
class OVIKPlatform : public QObject
{
    Q_OBJECT

public:
    /** Returns the one instance; creates it on the first call. It lives until the process ends. */
    static OVIKPlatform* getInstance();

    /** Keeps the device name that the runtime sent; nothing is sent to the service. */
    void SetDeviceNameAsString(QString strName);

    /** Returns the device name kept last, empty until the runtime has sent one. */
    QString GetDeviceNameAsString();

private:
    OVIKPlatform() = default;

    static bool m_bInstanceFlag;
    static OVIKPlatform* m_pInstance;

    QString m_deviceName;
};
