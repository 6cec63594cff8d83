#pragma once

class QRect;
class QWidget;

/** Makes a widget that is not shown yet a window above its parent that leaves the keyboard to the field below
 * and is no pop-up: an on-screen keyboard stays usable. */
void makeFloating(QWidget* pWidget);

/** Shows such a window; oRect is in pixels of the screen. */
void showFloating(QWidget* pWidget, const QRect& oRect);
