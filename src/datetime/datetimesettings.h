#pragma once

#include "json/elements.h"

#include <QString>

/** The platform's settings file for date and time, a JSON object. Errors are logged. */
namespace datetimesettings {

/**
 * Reads at most 1 MiB of the file, up to the first NUL, as Latin-1, and logs it.
 *
 * Returns false if the file does not exist (not logged), is not a regular file, or cannot be opened.
 */
bool readFile(const QString& strPath, QString& strText);

/**
 * Takes the NTP server from the text of the file.
 *
 * Returns true and leaves the address unchanged if the document names no server. Returns false if the text is
 * empty or not a JSON object, or if "ntp" or "server" has the wrong type.
 */
bool serverFromText(const QString& strText, QString& strAddress);

/**
 * Takes the NTP server, the member "server" of the object "ntp".
 *
 * Returns false if one of the two is missing; throws json::Exception if one has the wrong type.
 */
bool serverFromObject(const json::Object& oRoot, QString& strAddress);

} // namespace datetimesettings
