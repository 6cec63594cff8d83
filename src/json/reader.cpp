#include "json/reader.h"

#include <array>
#include <charconv>
#include <locale>
#include <set>
#include <sstream>
#include <string_view>
#include <system_error>

namespace json {
namespace {

constexpr unsigned int nMaxDepth = 1024;
constexpr std::size_t nInputChunk = 4096;
// How far the scanner runs ahead of the parser.
constexpr std::size_t nTokenBatch = 32;
// Above this many members names are looked up in an index.
constexpr std::size_t nMaxUnindexed = 24;

/** A set of bytes; asking for a byte is the same whatever the locale is and whether char is signed. */
class ByteSet
{
public:
    explicit constexpr ByteSet(std::string_view sBytes)
    {
        for (const char c : sBytes) {
            m_Contains[static_cast<unsigned char>(c)] = true;
        }
    }

    constexpr ByteSet operator~() const
    {
        ByteSet oOthers("");
        for (std::size_t n = 0; n < m_Contains.size(); ++n) {
            oOthers.m_Contains[n] = !m_Contains[n];
        }
        return oOthers;
    }

    constexpr bool Contains(char c) const { return m_Contains[static_cast<unsigned char>(c)]; }

private:
    std::array<bool, 256> m_Contains = {};
};

constexpr ByteSet oWhiteSpace(" \t\n\v\f\r");
constexpr ByteSet oNumberBytes("0123456789.eE-+");
constexpr ByteSet oPlainStringBytes = ~ByteSet("\"\\\n");

} // namespace

/** A piece of the text with a meaning of its own. */
struct Reader::Token
{
    enum Type {
        TOKEN_OBJECT_BEGIN,
        TOKEN_OBJECT_END,
        TOKEN_ARRAY_BEGIN,
        TOKEN_ARRAY_END,
        TOKEN_NEXT_ELEMENT,
        TOKEN_MEMBER_ASSIGN,
        TOKEN_STRING,
        TOKEN_NUMBER,
        TOKEN_BOOLEAN,
        TOKEN_NULL,
        TOKEN_NONE
    };

    /** Returns the type of the tokens that begin with c, TOKEN_NONE when none does. */
    static Type TypeOf(char c)
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
            return c == '-' || (c >= '0' && c <= '9') ? TOKEN_NUMBER : TOKEN_NONE;
        }
    }

    Type nType = TOKEN_NONE;
    std::string sValue;
    Location locBegin;
    Location locEnd;
};

/** The text, read in chunks, and the place in it. Peek() and Get() must not be called at the end. */
class Reader::InputStream
{
public:
    explicit InputStream(std::istream& istr) : m_iStr(istr) { Fill(); }

    bool EOS() const { return m_pNext == m_pEnd; }
    char Peek() const { return *m_pNext; }
    const Location& GetLocation() const { return m_Location; }

    char Get()
    {
        const char c = *m_pNext++;
        ++m_Location.m_nDocOffset;
        ++m_Location.m_nLineOffset;
        if (c == '\n') {
            ++m_Location.m_nLine;
            m_Location.m_nLineOffset = 0;
        }
        if (EOS()) {
            Fill();
        }
        return c;
    }

    /** Appends the bytes up to the first that is not in the set, which must not hold the line feed. */
    void GetAll(const ByteSet& oBytes, std::string& sTaken)
    {
        while (!EOS() && oBytes.Contains(Peek())) {
            const char* pBegin = m_pNext;
            do {
                ++m_pNext;
            } while (m_pNext != m_pEnd && oBytes.Contains(*m_pNext));
            const auto nTaken = static_cast<unsigned int>(m_pNext - pBegin);
            sTaken.append(pBegin, nTaken);
            m_Location.m_nDocOffset += nTaken;
            m_Location.m_nLineOffset += nTaken;
            if (EOS()) {
                Fill();
            }
        }
    }

private:
    void Fill()
    {
        m_pNext = m_pEnd = m_Chunk.data();
        if (!m_iStr.good()) {
            return;
        }
        const std::streamsize nRead = m_iStr.rdbuf()->sgetn(m_Chunk.data(), std::streamsize(m_Chunk.size()));
        m_pEnd += nRead;
        if (nRead < std::streamsize(m_Chunk.size())) {
            m_iStr.setstate(std::ios_base::eofbit);
        }
    }

    std::istream& m_iStr;
    Location m_Location;
    const char* m_pNext = nullptr;
    const char* m_pEnd = nullptr;
    std::array<char, nInputChunk> m_Chunk; // NOLINT(cppcoreguidelines-pro-type-member-init): filled when read
};

/** The tokens of the text, scanned a batch at a time. */
class Reader::TokenStream
{
public:
    explicit TokenStream(InputStream& inputStream) : m_InputStream(inputStream)
    {
        m_Tokens.reserve(nTokenBatch);
        m_itCurrent = m_Tokens.end();
    }

    /** Tells whether the last token was taken. What Get() returned is invalid afterwards. */
    bool EOS() { return m_itCurrent == m_Tokens.end() && !ScanBatch(); }

    /** Returns the current token; throws at the end. */
    Token& Peek()
    {
        if (EOS()) {
            throw ParseException("Unexpected end of token stream", m_locEnd, m_locEnd);
        }
        return *m_itCurrent;
    }

    /** Returns the current token and moves on; throws at the end. */
    Token& Get()
    {
        Token& token = Peek();
        ++m_itCurrent;
        return token;
    }

    /** Scans what is left, for the sake of its scan errors. */
    void ScanRest()
    {
        while (ScanBatch()) {
        }
    }

private:
    bool ScanBatch()
    {
        m_Tokens.clear();
        Scan(m_Tokens, m_InputStream);
        m_itCurrent = m_Tokens.begin();
        if (m_Tokens.empty()) {
            return false;
        }
        m_locEnd = m_Tokens.back().locEnd;
        return true;
    }

    InputStream& m_InputStream;
    std::vector<Token> m_Tokens;
    std::vector<Token>::iterator m_itCurrent;
    Location m_locEnd;
};

namespace {

/** Finds names that an object has already. An index of sorted names cannot be slowed down by chosen names. */
class NameIndex
{
public:
    explicit NameIndex(const Object& object) : m_Object(object) {}

    bool Contains(const std::string& sName)
    {
        if (m_Object.Size() <= nMaxUnindexed) {
            return m_Object.Find(sName) != m_Object.End();
        }
        if (m_Names.empty()) {
            for (auto itMember = m_Object.Begin(); itMember != m_Object.End(); ++itMember) {
                m_Names.insert(itMember->name);
            }
        }
        return m_Names.count(sName) != 0;
    }

    /** Keeps a reference to the name of a member that was added. */
    void Add(const std::string& sName)
    {
        if (!m_Names.empty()) {
            m_Names.insert(sName);
        }
    }

private:
    const Object& m_Object;
    std::set<std::string_view> m_Names;
};

/** What a string stream makes of numbers that do not fit: the largest double or one close to 0. */
double ReadExtremeNumber(const std::string& sText)
{
    std::istringstream oStream(sText);
    oStream.imbue(std::locale::classic());
    double dValue = 0;
    oStream >> dValue;
    return dValue;
}

/**
 * What a string stream has next after it has read what it can of a malformed number. A stream that failed has
 * nothing, which shows as the byte 0xFF; so it does after an exponent without digits, which it swallows
 * before it fails.
 */
char NextInNumber(const std::string& sNumber, const char* pStopped)
{
    const std::string_view sRead(sNumber.data(), std::size_t(pStopped - sNumber.data()));
    const bool bExponent =
        (*pStopped == 'e' || *pStopped == 'E') && sRead.find_first_of("eE") == std::string_view::npos;
    const bool bFailed = sRead.empty() || bExponent;
    return bFailed ? std::char_traits<char>::to_char_type(std::char_traits<char>::eof()) : *pStopped;
}

} // namespace

Reader::ScanException::ScanException(const std::string& sMessage, const Location& locError)
    : Exception(sMessage), m_locError(locError)
{
}

Reader::ParseException::ParseException(const std::string& sMessage, const Location& locTokenBegin,
                                       const Location& locTokenEnd)
    : Exception(sMessage), m_locTokenBegin(locTokenBegin), m_locTokenEnd(locTokenEnd)
{
}

void Reader::Read(Object& object, std::istream& istr)
{
    InputStream oInputStream(istr);
    TokenStream oTokenStream(oInputStream);
    try {
        Reader().Parse(object, oTokenStream);
        if (!oTokenStream.EOS()) {
            const Token& token = oTokenStream.Peek();
            throw ParseException("Expected End of token stream; found " + token.sValue, token.locBegin,
                                 token.locEnd);
        }
    } catch (const ParseException&) {
        oTokenStream.ScanRest();
        throw;
    }
}

void Reader::Scan(std::vector<Token>& tokens, InputStream& inputStream)
{
    while (tokens.size() < nTokenBatch) {
        while (!inputStream.EOS() && oWhiteSpace.Contains(inputStream.Peek())) {
            inputStream.Get();
        }
        if (inputStream.EOS()) {
            return;
        }
        ScanToken(tokens.emplace_back(), inputStream);
    }
}

void Reader::ScanToken(Token& token, InputStream& inputStream)
{
    token.locBegin = inputStream.GetLocation();
    const char c = inputStream.Peek();
    token.nType = Token::TypeOf(c);
    switch (token.nType) {
    case Token::TOKEN_STRING:
        token.sValue = MatchString(inputStream);
        break;
    case Token::TOKEN_NUMBER:
        token.sValue = MatchNumber(inputStream);
        break;
    case Token::TOKEN_BOOLEAN:
        token.sValue = c == 't' ? "true" : "false";
        MatchExpectedString(inputStream, token.sValue);
        break;
    case Token::TOKEN_NULL:
        token.sValue = "null";
        MatchExpectedString(inputStream, token.sValue);
        break;
    case Token::TOKEN_NONE:
        throw ScanException(std::string("Unexpected character in stream: ") + c, inputStream.GetLocation());
    default:
        token.sValue = inputStream.Get();
    }
    token.locEnd = inputStream.GetLocation();
}

std::string Reader::MatchString(InputStream& inputStream)
{
    static const std::string sQuotationMark = "\"";

    MatchExpectedString(inputStream, sQuotationMark);
    std::string sString;
    inputStream.GetAll(oPlainStringBytes, sString);
    while (!inputStream.EOS() && inputStream.Peek() != '"') {
        const char c = inputStream.Get();
        if (c != '\\') {
            sString += c;
        } else if (!inputStream.EOS()) {
            sString += MatchEscaped(inputStream);
        }
        inputStream.GetAll(oPlainStringBytes, sString);
    }
    MatchExpectedString(inputStream, sQuotationMark);
    return sString;
}

char Reader::MatchEscaped(InputStream& inputStream)
{
    const char c = inputStream.Get();
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
        throw ScanException(std::string("Unrecognized escape sequence found in string: \\") + c,
                            inputStream.GetLocation());
    }
}

std::string Reader::MatchNumber(InputStream& inputStream)
{
    std::string sNumber;
    inputStream.GetAll(oNumberBytes, sNumber);
    return sNumber;
}

void Reader::MatchExpectedString(InputStream& inputStream, const std::string& sExpected)
{
    for (const char c : sExpected) {
        if (inputStream.EOS() || inputStream.Get() != c) {
            throw ScanException("Expected string: " + sExpected, inputStream.GetLocation());
        }
    }
}

void Reader::Parse(UnknownElement& element, TokenStream& tokenStream)
{
    const Token& token = tokenStream.Peek();
    switch (token.nType) {
    case Token::TOKEN_OBJECT_BEGIN:
        return ParseNested<Object>(element, tokenStream);
    case Token::TOKEN_ARRAY_BEGIN:
        return ParseNested<Array>(element, tokenStream);
    case Token::TOKEN_STRING:
        return Parse(element.ConvertTo<String>(), tokenStream);
    case Token::TOKEN_NUMBER:
        return Parse(element.ConvertTo<Number>(), tokenStream);
    case Token::TOKEN_BOOLEAN:
        return Parse(element.ConvertTo<Boolean>(), tokenStream);
    case Token::TOKEN_NULL:
        return Parse(element.ConvertTo<Null>(), tokenStream);
    default:
        throw ParseException("Unexpected token: " + token.sValue, token.locBegin, token.locEnd);
    }
}

template<class ContainerType>
void Reader::ParseNested(UnknownElement& element, TokenStream& tokenStream)
{
    if (m_nDepth == nMaxDepth) {
        const Token& token = tokenStream.Peek();
        throw ParseException("Nesting deeper than 1024 levels", token.locBegin, token.locEnd);
    }
    Parse(element.ConvertTo<ContainerType>(), tokenStream);
}

void Reader::Parse(Object& object, TokenStream& tokenStream)
{
    ++m_nDepth;
    MatchExpectedToken(Token::TOKEN_OBJECT_BEGIN, tokenStream);
    NameIndex oNames(object);
    bool bMore = tokenStream.Peek().nType != Token::TOKEN_OBJECT_END;
    while (bMore) {
        const Location locBegin = tokenStream.Peek().locBegin;
        const Location locEnd = tokenStream.Peek().locEnd;
        Object::Member oMember(std::move(MatchExpectedToken(Token::TOKEN_STRING, tokenStream)),
                               UnknownElement(nullptr));
        MatchExpectedToken(Token::TOKEN_MEMBER_ASSIGN, tokenStream);
        Parse(oMember.element, tokenStream);
        if (oNames.Contains(oMember.name)) {
            throw ParseException("Duplicate object member token: " + oMember.name, locBegin, locEnd);
        }
        oNames.Add(object.m_Members.emplace_back(std::move(oMember)).name);
        bMore = MatchNextElement(tokenStream);
    }
    MatchExpectedToken(Token::TOKEN_OBJECT_END, tokenStream);
    --m_nDepth;
}

void Reader::Parse(Array& array, TokenStream& tokenStream)
{
    ++m_nDepth;
    MatchExpectedToken(Token::TOKEN_ARRAY_BEGIN, tokenStream);
    bool bMore = tokenStream.Peek().nType != Token::TOKEN_ARRAY_END;
    while (bMore) {
        Parse(array.m_Elements.emplace_back(UnknownElement(nullptr)), tokenStream);
        bMore = MatchNextElement(tokenStream);
    }
    MatchExpectedToken(Token::TOKEN_ARRAY_END, tokenStream);
    --m_nDepth;
}

void Reader::Parse(String& string, TokenStream& tokenStream)
{
    string.Value() = std::move(MatchExpectedToken(Token::TOKEN_STRING, tokenStream));
}

void Reader::Parse(Number& number, TokenStream& tokenStream)
{
    const Token& token = tokenStream.Peek();
    const std::string& sNumber = MatchExpectedToken(Token::TOKEN_NUMBER, tokenStream);
    const char* pEnd = sNumber.data() + sNumber.size();
    const auto oResult = std::from_chars(sNumber.data(), pEnd, number.Value());
    if (oResult.ec == std::errc::invalid_argument || oResult.ptr != pEnd) {
        throw ParseException(std::string("Unexpected character in NUMBER token: ") +
                                 NextInNumber(sNumber, oResult.ptr),
                             token.locBegin, token.locEnd);
    }
    if (oResult.ec == std::errc::result_out_of_range) {
        number.Value() = ReadExtremeNumber(sNumber);
    }
}

void Reader::Parse(Boolean& boolean, TokenStream& tokenStream)
{
    boolean.Value() = MatchExpectedToken(Token::TOKEN_BOOLEAN, tokenStream) == "true";
}

void Reader::Parse(Null& /*null*/, TokenStream& tokenStream)
{
    MatchExpectedToken(Token::TOKEN_NULL, tokenStream);
}

std::string& Reader::MatchExpectedToken(int nType, TokenStream& tokenStream)
{
    Token& token = tokenStream.Get();
    if (token.nType != nType) {
        throw ParseException("Unexpected token: " + token.sValue, token.locBegin, token.locEnd);
    }
    return token.sValue;
}

bool Reader::MatchNextElement(TokenStream& tokenStream)
{
    if (tokenStream.Peek().nType != Token::TOKEN_NEXT_ELEMENT) {
        return false;
    }
    tokenStream.Get();
    return true;
}

} // namespace json
