#pragma once

#include <QString>

/** The details of one network interface as they are shown and edited; all addresses are dotted IPv4 texts. */
struct sNetworkInterfaceDetails
{
    QString m_strName;      /**< as the operating system reports it, for example eth0 */
    QString m_strIPAddress; /**< 0.0.0.0 if the interface has none, empty if nothing was ever read */
    QString m_strSubnetMask;
    QString m_strStdGateway; /**< the default gateway */
    QString m_strMacId;      /**< hexadecimal bytes in lower case without leading zeros, joined with ":" */
    bool m_bISDHCP = false;  /**< the interface takes its address by DHCP */
};
