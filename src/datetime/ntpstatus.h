#pragma once

#include <QString>

/** What is known about the NTP daemon. */
struct sNTPInfo
{
    bool m_bIsNtpdEnabled = false; /**< not used: the check box is set from the platform service */
    QString m_strLastUpdate; /**< when the first peer was last heard: "64", "3h", "2d"; empty if unknown */
    QString m_strStatus;     /**< which of its last replies arrived, in octal: "377" for all */
    QString m_strServer;     /**< not used */
};

/** The status of the NTP daemon, as the dialog shows it. */
namespace ntpstatus {

/**
 * Takes "when" and "reach" of a peer from its line in the output of "ntpq -pn".
 *
 * Returns false and changes nothing if the line has fewer than seven columns, or if the daemon has never
 * heard from the peer.
 */
bool readPeer(const QString& strLine, sNTPInfo& oInfo);

/** Returns the translated text of the status line: the last synchronisation, "Connection error" or nothing.
 */
QString text(const sNTPInfo& oInfo);

} // namespace ntpstatus
