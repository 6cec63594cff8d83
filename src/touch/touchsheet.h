#pragma once

#include <QFont>
#include <QString>

/**
 * Returns the style sheet of the dialogs: the one place that says what their widgets look like and how large
 * the parts are that a finger has to hit.
 * @param nTarget height of fields, buttons and the rows of lists in pixels
 * @param oFont font of all texts, with a size in pixels; its family and size are used
 */
QString touchSheet(int nTarget, const QFont& oFont);
