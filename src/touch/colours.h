#pragma once

#include <QString>

/**
 * Replaces the names of colours in a style sheet, such as "@accent", by their values. All colours of the
 * panel and its dialogs, but black and white, are named here.
 */
QString withColours(QString strSheet);
