#include "keylayout.h"

namespace {

constexpr int s_nKeyHeight = 48;
constexpr int s_nSmallKeyHeight = 40;
constexpr QSize s_oWideLayout(10 * s_nSmallKeyHeight,
                              8 * s_nSmallKeyHeight); // ten keys a row, four rows in half of it

QStringList smallRows(eKeyPage ePage)
{
    switch (ePage) {
    case eKeyPage_Letters:
        return {"abcdef", "ghijkl", "m\t\v\f\b\r"};
    case eKeyPage_MoreLetters:
        return {"nopqrs", "tuvwxy", "z\t\v\f\b\r"};
    default:
        return {"123456", "7890/_", "+-.\f\b\r"};
    }
}

} // namespace

QStringList keyRows(eKeyPage ePage, const QSize& oScreen)
{
    if (ePage == eKeyPage_Numbers) {
        return {"12345", "67890", ".\b\r"};
    }
    if (oScreen.width() < s_oWideLayout.width() || oScreen.height() < s_oWideLayout.height()) {
        return smallRows(ePage);
    }
    if (ePage == eKeyPage_Signs) {
        return {"12345", "67890", "/_+-.", "\f\b\r"};
    }
    return {"qwertyuiop", "asdfghjkl/", "\tzxcvbnm_-", "\f.\b\r"};
}

int keyHeight(int nRows, const QSize& oScreen)
{
    return nRows * s_nKeyHeight > oScreen.height() / 2 ? s_nSmallKeyHeight : s_nKeyHeight;
}

QString keyLabel(QChar oKey, eKeyPage ePage)
{
    switch (oKey.toLatin1()) {
    case key::s_cDelete:
        return "Del";
    case key::s_cShift:
        return "Shift";
    case key::s_cMore:
        return ePage == eKeyPage_Letters ? "n-z" : "a-m";
    case key::s_cSigns:
        return ePage == eKeyPage_Signs ? "abc" : "123";
    case key::s_cDone:
        return "OK";
    default:
        return oKey;
    }
}
