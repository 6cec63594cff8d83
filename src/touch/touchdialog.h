#pragma once

#include <QFont>

class QDialog;

/**
 * Makes a dialog that is not shown yet usable with a finger on any screen: its look, its combo boxes, check
 * boxes and date fields, its size and its place.
 *
 * Fields and buttons are 48 pixels high, or 40 if the dialog does not fit then. If it still does not fit, its
 * form scrolls and the buttons stay in sight. The dialog stays in the middle of what an on-screen keyboard
 * leaves of the screen.
 * @param pDialog a dialog whose form (QFormLayout) lies in a box layout with the buttons as the last row;
 *                widgets between the two become rows of the form
 * @param oFont font of all texts, with a size in pixels
 */
void makeTouchable(QDialog* pDialog, const QFont& oFont);
