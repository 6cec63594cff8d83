#pragma once

#include <QString>
#include <QStringList>

/** The platform's time zones, and the script that sets one of them. */
namespace timezones {

/**
 * Returns the names in the output of the platform's generator, such as "['Asia/Tokyo', 'UTC']", in its order.
 *
 * The names are between the first '[' and the first ']', separated by commas. A missing bracket counts as the
 * beginning or the end of the output. Single quotes and blanks around a name are removed; empty names are
 * kept.
 */
QStringList fromOutput(const QString& strOutput);

/**
 * Returns a shell script with each "%1" and "%2" replaced by the zone.
 *
 * Blanks around the zone are removed. The shell takes any zone as one word.
 */
QString script(const QString& strTemplate, const QString& strZone);

} // namespace timezones
