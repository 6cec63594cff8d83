#pragma once

#include <QByteArray>

/** Returns where two texts begin to differ and how each goes on from there; nothing if they are equal. */
QByteArray difference(const QByteArray& oActual, const QByteArray& oExpected);
