#pragma once

#include <QList>
#include <QPoint>

class QWidget;

/**
 * Returns the row that a finger means which touches a screen between rows or beside one: the nearest above or
 * below, however far to the side.
 * @param oRows widgets of any size; hidden ones are left out
 * @param oGlobal where the finger is, in screen pixels
 * @param nReach greatest distance from the row in pixels
 * @return null if no row is within reach
 */
QWidget* nearestRow(const QList<QWidget*>& oRows, const QPoint& oGlobal, int nReach);
