#pragma once

#include <QString>

class ToolProcess;

/** What the dialog's one child process is running. */
enum eProcessType {
    eProcessType_GetTimeZoneList = 0,      /**< lists the time zones */
    eProcessType_GetCurrentTimeZone = 1,   /**< reads the current one */
    eProcessType_SetCurrentTimeZone = 2,   /**< sets the chosen one */
    eProcessType_SetCurrentDateTime = 3,   /**< never started: the clocks are set without a process */
    eProcessType_GetNTPDateTimeStatus = 4, /**< asks the NTP daemon for its first peer */
    eProcessType_SetNTPSettings = 5        /**< writes the configuration of the NTP daemon */
};

/** The platform's tools for date and time. */
namespace platformtools {

/**
 * Starts the tool for a step; scripts come from the compiled-in resources.
 * @param strZone the zone that is set; used by eProcessType_SetCurrentTimeZone only
 */
void start(ToolProcess& oTool, eProcessType eType, const QString& strZone);

/**
 * Returns whether a time zone that was set is in force: "/etc/timezone" names it, and "/etc/localtime" links
 * to its file, which is readable. Logs what is not.
 */
bool isTimeZoneInForce(const QString& strZone);

} // namespace platformtools
