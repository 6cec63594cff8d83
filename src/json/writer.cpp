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

constexpr int nPrecision = 20;
// A sign, digits, a point and an exponent.
constexpr std::size_t nMaxNumberText = 32;
constexpr std::ios_base::fmtflags nNumberFlags =
    std::ios_base::floatfield | std::ios_base::showpoint | std::ios_base::showpos | std::ios_base::uppercase;

/** Knows the letter that follows the backslash for bytes that must be escaped, 0 for those written as they
 * are. */
class EscapeLetters
{
public:
    constexpr EscapeLetters()
    {
        Set('"', '"');
        Set('\\', '\\');
        Set('\b', 'b');
        Set('\f', 'f');
        Set('\n', 'n');
        Set('\r', 'r');
        Set('\t', 't');
    }

    constexpr char Of(char c) const { return m_Letters[static_cast<unsigned char>(c)]; }

private:
    constexpr void Set(char c, char cLetter) { m_Letters[static_cast<unsigned char>(c)] = cLetter; }

    std::array<char, 256> m_Letters = {};
};

constexpr EscapeLetters oEscapeLetters;

/** Formats a number as a fresh stream would in the C locale; returns the end of the text. */
const char* Format(double dNumber, char* pBegin, char* pEnd)
{
    // Most numbers are small whole ones, for which there is a much faster way; it has no -0.
    constexpr double dMaxWhole = 1e15;
    const bool bSmall = std::abs(dNumber) < dMaxWhole && !std::signbit(dNumber);
    if (bSmall && dNumber == std::trunc(dNumber)) {
        return std::to_chars(pBegin, pEnd, static_cast<std::int64_t>(dNumber)).ptr;
    }
    return std::to_chars(pBegin, pEnd, dNumber, std::chars_format::general, nPrecision).ptr;
}

/** Formats a number as ostr would without its locale. */
std::string FormatAs(const std::ostream& ostr, double dNumber)
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
        oWriter.WriteOpen();
    } catch (...) {
        ostr.setstate(std::ios_base::badbit);
    }
    ostr.flush();
}

void Writer::Visit(const Array& array)
{
    if (array.Empty()) {
        WriteText("[]");
    } else {
        m_Open.push_back({&array, array.Begin(), nullptr, {}});
    }
}

void Writer::Visit(const Object& object)
{
    if (object.Empty()) {
        WriteText("{}");
    } else {
        m_Open.push_back({nullptr, {}, &object, object.Begin()});
    }
}

void Writer::Visit(const Number& number)
{
    m_ostr.precision(nPrecision);
    if ((m_ostr.flags() & nNumberFlags) != 0) {
        WriteText(FormatAs(m_ostr, number.Value()));
        return;
    }
    std::array<char, nMaxNumberText> szText;
    const char* pEnd = Format(number.Value(), szText.data(), szText.data() + szText.size());
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

// Containers only queue up here when they are visited, so that depth costs no stack.
void Writer::WriteOpen()
{
    while (!m_Open.empty() && m_ostr.good()) {
        if (m_Open.back().pArray) {
            WriteNextElement();
        } else {
            WriteNextMember();
        }
    }
}

void Writer::WriteNextElement()
{
    sOpen& open = m_Open.back();
    if (open.itElement == open.pArray->End()) {
        WriteByte(']');
        m_Open.pop_back();
        return;
    }
    WriteByte(open.itElement == open.pArray->Begin() ? '[' : ',');
    const UnknownElement& element = *open.itElement++;
    element.Accept(*this);
}

void Writer::WriteNextMember()
{
    sOpen& open = m_Open.back();
    if (open.itMember == open.pObject->End()) {
        WriteByte('}');
        m_Open.pop_back();
        return;
    }
    WriteByte(open.itMember == open.pObject->Begin() ? '{' : ',');
    const Object::Member& member = *open.itMember++;
    WriteString(member.name);
    WriteText(" : ");
    member.element.Accept(*this);
}

void Writer::WriteString(std::string_view sValue)
{
    WriteByte('"');
    std::size_t nWritten = 0;
    for (std::size_t n = 0; n < sValue.size(); ++n) {
        const char cLetter = oEscapeLetters.Of(sValue[n]);
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
    if (m_ostr.good() && m_Buffer.sputn(sText.data(), nSize) != nSize) {
        m_ostr.setstate(std::ios_base::badbit);
    }
}

void Writer::WriteByte(char c)
{
    if (m_ostr.good() && m_Buffer.sputc(c) == std::char_traits<char>::eof()) {
        m_ostr.setstate(std::ios_base::badbit);
    }
}

} // namespace json
