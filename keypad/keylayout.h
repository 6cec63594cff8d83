#pragma once

#include <QSize>
#include <QStringList>

/** What the keys of a keypad page are. */
enum eKeyPage {
    eKeyPage_Numbers,     /**< digits and full stop, for addresses, times and dates */
    eKeyPage_Letters,     /**< letters, or the first half of them on a small screen */
    eKeyPage_MoreLetters, /**< the second half of the letters on a small screen */
    eKeyPage_Signs        /**< digits and the signs of names */
};

/** The keys that type nothing by themselves, as characters of a row. */
namespace key {

constexpr char s_cDelete = '\b';
constexpr char s_cShift = '\t';
constexpr char s_cMore = '\v';  // the other half of the letters
constexpr char s_cSigns = '\f'; // signs or letters
constexpr char s_cDone = '\r';

} // namespace key

/** Returns the rows of a page, one character a key; all keys of a row have the same width. */
QStringList keyRows(eKeyPage ePage, const QSize& oScreen);

/** Returns the height of a key in pixels: 48, or 40 where the keypad would take more than half of the screen.
 */
int keyHeight(int nRows, const QSize& oScreen);

/** Returns what a key shows. */
QString keyLabel(QChar oKey, eKeyPage ePage);
