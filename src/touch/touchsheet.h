#pragma once

#include <QFont>
#include <QString>

/**
 * Returns the style sheet of the dialogs: the look of their widgets and the sizes of the parts that a finger
 * has to hit. A push button with the property "accent" stands out.
 * @param nTarget height of fields, buttons and the rows of lists in pixels
 * @param oFont font of all texts, with a size in pixels; its family and size are used
 */
QString touchSheet(int nTarget, const QFont& oFont);
