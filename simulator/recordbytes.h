#pragma once

#include <QByteArray>
#include <QtGlobal>

#include <cstddef>

/** Returns the bytes of a record's field; nLength, unless it is negative, cuts them or fills them up with
 * 0xff. */
template<std::size_t N>
QByteArray recordBytes(const quint8 (&aField)[N], int nLength = -1)
{
    const QByteArray oBytes(reinterpret_cast<const char*>(aField), static_cast<int>(N));
    return nLength < 0 ? oBytes : oBytes.leftJustified(nLength, '\xff', true);
}
