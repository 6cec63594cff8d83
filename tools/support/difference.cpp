#include "support/difference.h"

#include <algorithm>

QByteArray difference(const QByteArray& oActual, const QByteArray& oExpected)
{
    if (oActual == oExpected) {
        return {};
    }
    constexpr int nBefore = 20;
    constexpr int nShown = 80;
    const auto oEnds = std::mismatch(oActual.begin(), oActual.end(), oExpected.begin(), oExpected.end());
    const auto nPlace = static_cast<int>(oEnds.first - oActual.begin());
    const int nBegin = std::max(nPlace - nBefore, 0);
    return "at " + QByteArray::number(nPlace) + ": '" + oActual.mid(nBegin, nShown) + "' in place of '" +
           oExpected.mid(nBegin, nShown) + '\'';
}
