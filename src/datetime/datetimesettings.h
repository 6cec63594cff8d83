#pragma once

#include "json/elements.h"

#include <QString>

/** The platform's settings file for date and time, a JSON object. What is wrong with it is logged. */
namespace datetimesettings {

/**
 * Reads at most 1 MiB of the file, up to the first NUL, as Latin-1, and logs it.
 *
 * Returns false if the file does not exist, which is not logged, is no regular file or cannot be opened.
 */
bool readFile(const QString& strPath, QString& strText);

/**
 * Takes the NTP server from the text of the file.
 *
 * Returns true and leaves the address as it is if the document does not name a server. Returns false for an
 * empty text, for what is no JSON object, and for an "ntp" or "server" of another type.
 */
bool serverFromText(const QString& strText, QString& strAddress);

/**
 * Takes the NTP server, the member "server" of the object "ntp".
 *
 * Returns false if one of the two is missing; throws json::Exception if one has another type.
 */
bool serverFromObject(const json::Object& oRoot, QString& strAddress);

} // namespace datetimesettings
