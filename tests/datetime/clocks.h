#pragma once

#include <QStringList>

/** Replaces the real clocks in a test linked with --wrap of the functions in clocks.cpp. */
namespace clocks {

extern QString g_strFault;      /**< "refused", "no RTC", "other RTC", "stuck RTC"; anything else is none */
extern QStringList g_oRequests; /**< what the clocks were asked for and what perror() was called with */

} // namespace clocks
