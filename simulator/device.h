#pragma once

#include "networkdocument.h"
#include "platform/ovikrecords.h"

#include <QMap>
#include <QString>

/** All that the simulated device keeps. clear() puts it back to what it was at first. */
class Device : public QObject
{
    Q_OBJECT

public:
    /** One service of the device. */
    struct sService
    {
        bool m_bEnabled = false;
        bool m_bRunning = false;
    };

    /** Makes a device whose DHCP leases take nLeaseDelayMs milliseconds, 0 or more; strDocument is its
     * network configuration at first. */
    Device(QString strDocument, int nLeaseDelayMs);

    /** Puts everything back; returns false when the first network configuration is none. */
    bool clear();

    /** Sets the version text of the main OS partition: Latin-1, cut to 20 characters, filled with NULs. */
    void setVersion(const QString& strVersion);

    /** The network configuration. */
    NetworkDocument m_oNetwork;
    /** The services by name: "ntpd" only, at first disabled and stopped. */
    QMap<QString, sService> m_oServices;
    /** The identification of the device. */
    systemInfo m_oSystem;
    /** The main OS partition, at first of the version 1.2.3. */
    partitionInfo m_oMainOS;

private:
    QString m_strDocument;
};
