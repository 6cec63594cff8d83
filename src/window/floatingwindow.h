#pragma once

class QRect;
class QWidget;

/** Turns a widget that is not shown yet into a window above its parent. The field below keeps the keyboard,
 * and an on-screen keyboard stays usable. */
void makeFloating(QWidget* pWidget);

/** Shows such a window; oRect is in pixels of the screen. */
void showFloating(QWidget* pWidget, const QRect& oRect);
