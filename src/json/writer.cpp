#include "json/writer.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <locale>
#include <sstream>
#include <string_view>

namespace json {
namespace {

constexpr int s_nPrecision = 20;
// A sign, digits, a point and an exponent.
constexpr std::size_t s_nMaxNumberText = 32;
constexpr std::ios_base::fmtflags s_nNumberFlags =
    std::ios_base::floatfield | std::ios_base::showpoint | std::ios_base::showpos | std::ios_base::uppercase;

/** The letter that follows the backslash, by byte; 0 for bytes that are written as they are. A table: most of
 * the time of writing goes into this look-up, and branches would make writing a tenth slower. */
constexpr auto s_EscapeLetters = [] {
    std::array<char, 256> letters = {};
    letters['"'] = '"';
    letters['\\'] = '\\';
    letters['\b'] = 'b';
    letters['\f'] = 'f';
    letters['\n'] = 'n';
    letters['\r'] = 'r';
    letters['\t'] = 't';
    return letters;
}();

/** Formats a number as a fresh stream would in the C locale; returns the end of the text. */
const char* format(double dNumber, char* pBegin, char* pEnd)
{
    // Small whole numbers, the most frequent ones, have a much faster path, which cannot write -0.
    constexpr double dMaxWhole = 1e15;
    const bool bSmall = std::abs(dNumber) < dMaxWhole && !std::signbit(dNumber);
    if (bSmall && dNumber == std::trunc(dNumber)) {
        return std::to_chars(pBegin, pEnd, static_cast<std::int64_t>(dNumber)).ptr;
    }
    return std::to_chars(pBegin, pEnd, dNumber, std::chars_format::general, s_nPrecision).ptr;
}

/** Formats a number as ostr would without its locale. */
std::string formatAs(const std::ostream& ostr, double dNumber)
{
    std::ostringstream oText;
    oText.imbue(std::locale::classic());
    oText.flags(ostr.flags());
    oText.precision(ostr.precision());
    oText << dNumber;
    return oText.str();
}

} // namespace

void Writer::Write(const Object& object, std::ostream& ostr)
{
    const std::ostream::sentry oSentry(ostr);
    if (!oSentry) {
        return;
    }
    try {
        Writer oWriter(ostr);
        oWriter.Visit(object);
        if (oWriter.m_bFailed) {
            ostr.setstate(std::ios_base::badbit);
        }
    } catch (...) {
        ostr.setstate(std::ios_base::badbit);
    }
    ostr.flush();
}

void Writer::Visit(const Array& array)
{
    WriteByte('[');
    for (auto itElement = array.Begin(); itElement != array.End(); ++itElement) {
        if (itElement != array.Begin()) {
            WriteByte(',');
        }
        itElement->Accept(*this);
    }
    WriteByte(']');
}

void Writer::Visit(const Object& object)
{
    WriteByte('{');
    for (auto itMember = object.Begin(); itMember != object.End(); ++itMember) {
        if (itMember != object.Begin()) {
            WriteByte(',');
        }
        WriteString(itMember->name);
        WriteText(" : ");
        itMember->element.Accept(*this);
    }
    WriteByte('}');
}

void Writer::Visit(const Number& number)
{
    m_ostr.precision(s_nPrecision); // Kept, see docs/compatibility.md
    if ((m_ostr.flags() & s_nNumberFlags) != 0) {
        WriteText(formatAs(m_ostr, number.Value()));
        return;
    }
    std::array<char, s_nMaxNumberText> szText;
    const char* pEnd = format(number.Value(), szText.data(), szText.data() + szText.size());
    WriteText({szText.data(), std::size_t(pEnd - szText.data())});
}

void Writer::Visit(const String& string)
{
    WriteString(string.Value());
}

void Writer::Visit(const Boolean& boolean)
{
    WriteText(boolean.Value() ? "true" : "false");
}

void Writer::Visit(const Null& /*null*/)
{
    WriteText("null");
}

void Writer::WriteString(std::string_view sValue)
{
    WriteByte('"');
    std::size_t nWritten = 0;
    for (std::size_t n = 0; n < sValue.size(); ++n) {
        const char cLetter = s_EscapeLetters[static_cast<unsigned char>(sValue[n])];
        if (cLetter != 0) {
            WriteText(sValue.substr(nWritten, n - nWritten));
            WriteByte('\\');
            WriteByte(cLetter);
            nWritten = n + 1;
        }
    }
    WriteText(sValue.substr(nWritten));
    WriteByte('"');
}

void Writer::WriteText(std::string_view sText)
{
    const auto nSize = std::streamsize(sText.size());
    m_bFailed = m_bFailed || m_Buffer.sputn(sText.data(), nSize) != nSize;
}

void Writer::WriteByte(char c)
{
    m_bFailed = m_bFailed || m_Buffer.sputc(c) == std::char_traits<char>::eof();
}

} // namespace json
