#include "touch/colours.h"

namespace {

struct sColour
{
    const char* szName;
    const char* szValue;
};

constexpr sColour s_aColours[] = {
    {"@accent", "#0b7f86"}, // of the logo
    {"@dark", "#1b2f3c"},   // of the logo
    {"@tint", "#eef8f8"},
    {"@border", "#a8b2b8"},
    {"@offText", "#8a949a"}, // of what is disabled
    {"@offBorder", "#d5dbde"},
    {"@offField", "#eceff1"},
    {"@trough", "rgb(220,220,220)"}, // of scroll bars
    {"@handle", "rgb(120,130,140)"},
};

} // namespace

QString withColours(QString strSheet)
{
    for (const sColour& oColour : s_aColours) {
        strSheet.replace(oColour.szName, oColour.szValue);
    }
    return strSheet;
}
