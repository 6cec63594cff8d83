#pragma once

#include <QString>
#include <QStringList>

/** The platform's time zones, and the script that sets one of them. */
namespace timezones {

/**
 * Returns the names in the output of the platform's generator, such as "['Asia/Tokyo', 'UTC']", in its order.
 *
 * The names stand between the first '[' and the first ']' and are separated by commas. A bracket that is
 * missing stands for the beginning or the end of the output. Single quotes and the blanks around a name go;
 * an empty name stays.
 */
QStringList fromOutput(const QString& strOutput);

/**
 * Returns a shell script with the zone in the place of each "%1" and "%2".
 *
 * Blanks around the zone go. Whatever the zone is, the shell takes it as one word.
 */
QString script(const QString& strTemplate, const QString& strZone);

} // namespace timezones
