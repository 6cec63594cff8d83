#pragma once

#include <QFont>

class FormArea;
class QBoxLayout;
class QDialog;
class QFormLayout;

/**
 * Puts a FormArea with pForm in its place among pRows. The last row, the buttons, share the whole width;
 * widgets between the two become rows of the form.
 * @return the area, which the dialog owns
 */
FormArea* makeScrollable(QFormLayout* pForm, QBoxLayout* pRows);

/** Gives a dialog the look, the heights and the size for the visible screen: fields and buttons of 48 pixels
 * if it fits then, or of 40, with fields below their captions if it is too wide. */
void fitDialog(QDialog* pDialog, FormArea* pArea, const QFont& oFont);
