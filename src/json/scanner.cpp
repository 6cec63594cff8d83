#include "json/scanner.h"

#include <algorithm>

namespace json {
namespace {

// These are the same whatever the locale is and whether char is signed.
bool isWhiteSpace(char c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}

bool isNumberByte(char c)
{
    return (c >= '0' && c <= '9') || c == '.' || c == 'e' || c == 'E' || c == '-' || c == '+';
}

// Returns what the byte behind a backslash stands for, 0 when it makes no escape sequence.
char unescape(char c)
{
    // Kept, see docs/compatibility.md
    switch (c) {
    case '/':
    case '"':
    case '\\':
        return c;
    case 'b':
        return '\b';
    case 'f':
        return '\f';
    case 'n':
        return '\n';
    case 'r':
        return '\r';
    case 't':
        return '\t';
    default:
        return 0;
    }
}

} // namespace

Reader::Token::Type Reader::Token::TypeOf(char c)
{
    switch (c) {
    case '{':
        return TOKEN_OBJECT_BEGIN;
    case '}':
        return TOKEN_OBJECT_END;
    case '[':
        return TOKEN_ARRAY_BEGIN;
    case ']':
        return TOKEN_ARRAY_END;
    case ',':
        return TOKEN_NEXT_ELEMENT;
    case ':':
        return TOKEN_MEMBER_ASSIGN;
    case '"':
        return TOKEN_STRING;
    case 't':
    case 'f':
        return TOKEN_BOOLEAN;
    case 'n':
        return TOKEN_NULL;
    default:
        return TOKEN_NUMBER;
    }
}

std::string Reader::Token::Value() const
{
    if (nType != TOKEN_STRING) {
        return std::string(sText);
    }
    const std::string_view sContents(sText.data() + 1, sText.size() - 2);
    if (!bEscaped) {
        return std::string(sContents);
    }
    std::string sValue;
    for (std::size_t n = 0; n < sContents.size(); ++n) {
        sValue += sContents[n] == '\\' ? unescape(sContents[++n]) : sContents[n];
    }
    return sValue;
}

Reader::Location Reader::InputStream::GetLocation(const char* pPlace) const
{
    const std::string_view sBefore(m_pBegin, std::size_t(pPlace - m_pBegin));
    const auto nLine = std::count(sBefore.begin(), sBefore.end(), '\n');
    const std::size_t nLineBegin = sBefore.rfind('\n') + 1;
    return {static_cast<unsigned int>(nLine), static_cast<unsigned int>(sBefore.size() - nLineBegin),
            static_cast<unsigned int>(sBefore.size())};
}

void Reader::Scan(std::vector<Token>& tokens, InputStream& inputStream)
{
    SkipWhiteSpace(inputStream);
    while (!inputStream.EOS()) {
        tokens.push_back(MatchToken(inputStream));
        SkipWhiteSpace(inputStream);
    }
}

void Reader::SkipWhiteSpace(InputStream& inputStream)
{
    while (!inputStream.EOS() && isWhiteSpace(inputStream.Peek())) {
        inputStream.Get();
    }
}

Reader::Token Reader::MatchToken(InputStream& inputStream)
{
    const char* pBegin = inputStream.Place();
    const Token::Type nType = Token::TypeOf(*pBegin);
    bool bEscaped = false;
    switch (nType) {
    case Token::TOKEN_STRING:
        bEscaped = MatchString(inputStream);
        break;
    case Token::TOKEN_NUMBER:
        MatchNumber(inputStream);
        break;
    case Token::TOKEN_BOOLEAN:
        MatchExpectedString(inputStream, *pBegin == 't' ? "true" : "false");
        break;
    case Token::TOKEN_NULL:
        MatchExpectedString(inputStream, "null");
        break;
    default:
        inputStream.Get();
    }
    return {nType, bEscaped, {pBegin, std::size_t(inputStream.Place() - pBegin)}};
}

bool Reader::MatchString(InputStream& inputStream)
{
    inputStream.Get();
    const std::string_view sRest = inputStream.Rest();
    const std::string_view sToQuotationMark = sRest.substr(0, sRest.find('"'));
    inputStream.Skip(std::min(sToQuotationMark.find('\\'), sToQuotationMark.size()));
    bool bEscaped = false;
    while (!inputStream.EOS() && inputStream.Peek() != '"') {
        if (inputStream.Get() == '\\' && !inputStream.EOS()) {
            MatchEscaped(inputStream);
            bEscaped = true;
        }
    }
    if (inputStream.EOS()) {
        throw ScanException("Expected string: \"", inputStream.GetLocation());
    }
    inputStream.Get();
    return bEscaped;
}

void Reader::MatchEscaped(InputStream& inputStream)
{
    const char c = inputStream.Get();
    if (unescape(c) == 0) {
        throw ScanException(std::string("Unrecognized escape sequence found in string: \\") + c,
                            inputStream.GetLocation());
    }
}

void Reader::MatchNumber(InputStream& inputStream)
{
    const char c = inputStream.Peek();
    if (c != '-' && (c < '0' || c > '9')) {
        throw ScanException(std::string("Unexpected character in stream: ") + c, inputStream.GetLocation());
    }
    while (!inputStream.EOS() && isNumberByte(inputStream.Peek())) {
        inputStream.Get();
    }
}

void Reader::MatchExpectedString(InputStream& inputStream, std::string_view sExpected)
{
    for (const char c : sExpected) {
        if (inputStream.EOS() || inputStream.Get() != c) {
            throw ScanException("Expected string: " + std::string(sExpected), inputStream.GetLocation());
        }
    }
}

} // namespace json
