#include "json/reader.h"

#include <array>
#include <bitset>
#include <charconv>
#include <iterator>
#include <list>
#include <locale>
#include <set>
#include <sstream>
#include <string_view>
#include <system_error>

namespace json {
namespace {

constexpr unsigned int nMaxDepth = 1024;
constexpr unsigned int nMaxArrays = 65536;
constexpr std::streamsize nInputChunk = 4096;
// How far the scanner runs ahead of the parser.
constexpr std::size_t nTokenBatch = 16;
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

constexpr ByteSet oBlanks(" \t");
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
    static Type TypeOf(char c);

    /** Scans the token that begins at the stream's place. */
    explicit Token(InputStream& inputStream);
    Token(Type nTokenType, const Location& locToken, InputStream& inputStream);

    Type nType;
    std::string sValue;
    Location locBegin;
    Location locEnd;
};

/** Tells by its first byte of which type a token is. */
class Reader::TokenTypes
{
public:
    constexpr TokenTypes()
    {
        for (Token::Type& nType : m_Types) {
            nType = Token::TOKEN_NONE;
        }
        Set("{", Token::TOKEN_OBJECT_BEGIN);
        Set("}", Token::TOKEN_OBJECT_END);
        Set("[", Token::TOKEN_ARRAY_BEGIN);
        Set("]", Token::TOKEN_ARRAY_END);
        Set(",", Token::TOKEN_NEXT_ELEMENT);
        Set(":", Token::TOKEN_MEMBER_ASSIGN);
        Set("\"", Token::TOKEN_STRING);
        Set("-0123456789", Token::TOKEN_NUMBER);
        Set("tf", Token::TOKEN_BOOLEAN);
        Set("n", Token::TOKEN_NULL);
    }

    constexpr Token::Type Of(char c) const { return m_Types[static_cast<unsigned char>(c)]; }

private:
    constexpr void Set(std::string_view sFirstBytes, Token::Type nType)
    {
        for (const char c : sFirstBytes) {
            m_Types[static_cast<unsigned char>(c)] = nType;
        }
    }

    std::array<Token::Type, 256> m_Types = {};
};

/** The text, read in chunks, and the place in it. Peek() and Get() must not be called at the end. */
class Reader::InputStream
{
public:
    explicit InputStream(std::istream& istr) : m_iStr(istr) { Fill(); }

    bool EOS() const { return m_pNext == m_pEnd; }
    char Peek() const { return *m_pNext; }

    Location GetLocation() const
    {
        const auto nSince = static_cast<unsigned int>(m_pNext - m_pLocated);
        return {m_Location.m_nLine, m_Location.m_nLineOffset + nSince, m_Location.m_nDocOffset + nSince};
    }

    char Get()
    {
        const char c = *m_pNext++;
        if (c == '\n') {
            m_Location = {m_Location.m_nLine + 1, 0, GetLocation().m_nDocOffset};
            m_pLocated = m_pNext;
        }
        FillAtEnd();
        return c;
    }

    /** Takes the bytes that are in the set, which must hold neither line feed nor quotation mark. */
    std::string GetAll(const ByteSet& oBytes)
    {
        const char* pBegin = m_pNext;
        SkipInChunk(oBytes);
        std::string sTaken(pBegin, std::size_t(m_pNext - pBegin));
        if (EOS()) {
            Fill();
            GetMore(oBytes, sTaken);
        }
        return sTaken;
    }

    void SkipWhiteSpace()
    {
        SkipBlanks();
        while (!EOS() && oWhiteSpace.Contains(Peek())) {
            Get();
            SkipBlanks();
        }
    }

private:
    void SkipBlanks()
    {
        SkipInChunk(oBlanks);
        FillAtEnd();
    }

    // The mark behind the chunk is in no set and ends the loop.
    void SkipInChunk(const ByteSet& oBytes)
    {
        const char* pNext = m_pNext;
        while (oBytes.Contains(*pNext)) {
            ++pNext;
        }
        m_pNext = pNext;
    }

    void FillAtEnd()
    {
        if (EOS()) {
            Fill();
        }
    }

    void Fill();
    std::streamsize FillChunk();
    void GetMore(const ByteSet& oBytes, std::string& sTaken);

    std::istream& m_iStr;
    // The place of m_pLocated, which is behind the last line feed or where the chunk begins.
    Location m_Location;
    const char* m_pLocated = nullptr;
    const char* m_pNext = nullptr;
    const char* m_pEnd = nullptr;
    // One byte more than is read, for the mark.
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init): is filled when it is read
    std::array<char, nInputChunk + 1> m_Chunk;
};

void Reader::InputStream::Fill()
{
    m_Location = GetLocation();
    char* pEnd = m_Chunk.data();
    if (m_iStr.good()) {
        pEnd += FillChunk();
    }
    *pEnd = '"';
    m_pLocated = m_pNext = m_Chunk.data();
    m_pEnd = pEnd;
}

// What the stream's buffer throws becomes a state of the stream, as in the stream's own functions.
std::streamsize Reader::InputStream::FillChunk()
{
    std::streamsize nRead = 0;
    auto nState = std::ios_base::badbit;
    try {
        nRead = m_iStr.rdbuf()->sgetn(m_Chunk.data(), nInputChunk);
        nState = nRead == nInputChunk ? std::ios_base::goodbit : std::ios_base::eofbit;
    } catch (...) {
        nRead = 0;
    }
    m_iStr.setstate(nState);
    return nRead;
}

void Reader::InputStream::GetMore(const ByteSet& oBytes, std::string& sTaken)
{
    while (!EOS() && oBytes.Contains(Peek())) {
        const char* pBegin = m_pNext;
        SkipInChunk(oBytes);
        sTaken.append(pBegin, m_pNext);
        FillAtEnd();
    }
}

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
            ThrowEnd();
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
    [[noreturn]] void ThrowEnd() const
    {
        throw ParseException("Unexpected end of token stream", m_locEnd, m_locEnd);
    }

    bool ScanBatch()
    {
        if (!m_Tokens.empty()) {
            m_locEnd = m_Tokens.back().locEnd;
        }
        m_Tokens.clear();
        Scan(m_Tokens, m_InputStream);
        m_itCurrent = m_Tokens.begin();
        return !m_Tokens.empty();
    }

    InputStream& m_InputStream;
    std::vector<Token> m_Tokens;
    std::vector<Token>::iterator m_itCurrent;
    Location m_locEnd;
};

namespace {

/**
 * Watches that an object's names stay unique while members are added to it. A small object is searched,
 * though only when a name has the mark of another; a large one gets an index of sorted names, which no choice
 * of names can slow down.
 */
class NameIndex
{
public:
    explicit NameIndex(const Object& object) : m_Object(object)
    {
        for (auto itMember = object.Begin(); itMember != object.End(); ++itMember) {
            m_Marks.set(Mark(itMember->name));
        }
    }

    /** Takes note of the name of the object's last member; tells whether no other member has it. */
    bool AddLast(const std::string& sName)
    {
        if (m_Object.Size() > nMaxUnindexed) {
            return AddToIndex(sName);
        }
        auto oMark = m_Marks[Mark(sName)];
        if (oMark && m_Object.Find(sName) != std::prev(m_Object.End())) {
            return false;
        }
        oMark = true;
        return true;
    }

private:
    bool AddToIndex(const std::string& sName)
    {
        if (m_Names.empty()) {
            const auto itLast = std::prev(m_Object.End());
            for (auto itMember = m_Object.Begin(); itMember != itLast; ++itMember) {
                m_Names.insert(itMember->name);
            }
        }
        return m_Names.insert(sName).second;
    }

    static constexpr std::size_t nMarks = 256;

    static std::size_t Mark(const std::string& sName)
    {
        if (sName.empty()) {
            return 0;
        }
        constexpr std::size_t nFactor = 31;
        const std::size_t nLast = static_cast<unsigned char>(sName.back());
        const std::size_t nMiddle = static_cast<unsigned char>(sName[sName.size() / 2]);
        return ((nLast * nFactor + nMiddle) * nFactor + sName.size()) % nMarks;
    }

    const Object& m_Object;
    std::bitset<nMarks> m_Marks;
    std::set<std::string_view> m_Names;
};

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

Reader::Token::Type Reader::Token::TypeOf(char c)
{
    static constexpr TokenTypes oTypes;
    return oTypes.Of(c);
}

Reader::Token::Token(InputStream& inputStream)
    : Token(TypeOf(inputStream.Peek()), inputStream.GetLocation(), inputStream)
{
}

Reader::Token::Token(Type nTokenType, const Location& locToken, InputStream& inputStream)
    : nType(nTokenType), sValue(MatchValue(nTokenType, inputStream)), locBegin(locToken),
      locEnd(inputStream.GetLocation())
{
}

void Reader::Scan(std::vector<Token>& tokens, InputStream& inputStream)
{
    inputStream.SkipWhiteSpace();
    while (!inputStream.EOS() && tokens.size() < nTokenBatch) {
        tokens.emplace_back(inputStream);
        inputStream.SkipWhiteSpace();
    }
}

std::string Reader::MatchValue(int nType, InputStream& inputStream)
{
    const char c = inputStream.Peek();
    if (nType < Token::TOKEN_STRING) {
        inputStream.Get();
        return {&c, 1};
    }
    switch (nType) {
    case Token::TOKEN_STRING:
        return MatchString(inputStream);
    case Token::TOKEN_NUMBER:
        return MatchNumber(inputStream);
    case Token::TOKEN_BOOLEAN:
        return MatchLiteral(c == 't' ? "true" : "false", inputStream);
    case Token::TOKEN_NULL:
        return MatchLiteral("null", inputStream);
    default:
        ThrowUnexpected(c, inputStream);
    }
}

std::string Reader::MatchString(InputStream& inputStream)
{
    MatchQuotationMark(inputStream);
    std::string sString = inputStream.GetAll(oPlainStringBytes);
    while (!inputStream.EOS() && inputStream.Peek() != '"') {
        const char c = inputStream.Get();
        if (c != '\\') {
            sString += c;
        } else if (!inputStream.EOS()) {
            sString += MatchEscaped(inputStream);
        }
        sString += inputStream.GetAll(oPlainStringBytes);
    }
    MatchQuotationMark(inputStream);
    return sString;
}

void Reader::MatchQuotationMark(InputStream& inputStream)
{
    if (inputStream.EOS() || inputStream.Peek() != '"') {
        MatchExpectedString(inputStream, "\"");
    }
    inputStream.Get();
}

std::string Reader::MatchLiteral(std::string_view sLiteral, InputStream& inputStream)
{
    MatchExpectedString(inputStream, sLiteral);
    return std::string(sLiteral);
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
    return inputStream.GetAll(oNumberBytes);
}

void Reader::MatchExpectedString(InputStream& inputStream, std::string_view sExpected)
{
    for (const char c : sExpected) {
        if (inputStream.EOS() || inputStream.Get() != c) {
            throw ScanException("Expected string: " + std::string(sExpected), inputStream.GetLocation());
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
        ThrowUnexpected(token);
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
        // Joins the object when it is complete, without being moved.
        std::list<Object::Member> oNew;
        Object::Member& member = oNew.emplace_back(
            std::move(MatchExpectedToken(Token::TOKEN_STRING, tokenStream)), UnknownElement(nullptr));
        MatchExpectedToken(Token::TOKEN_MEMBER_ASSIGN, tokenStream);
        Parse(member.element, tokenStream);
        object.m_Members.splice(object.m_Members.end(), oNew);
        if (!oNames.AddLast(member.name)) {
            const std::string sName = std::move(member.name);
            object.m_Members.pop_back();
            throw ParseException("Duplicate object member token: " + sName, locBegin, locEnd);
        }
        bMore = MatchNextElement(tokenStream);
    }
    MatchExpectedToken(Token::TOKEN_OBJECT_END, tokenStream);
    --m_nDepth;
}

void Reader::Parse(Array& array, TokenStream& tokenStream)
{
    ++m_nDepth;
    CountArray(tokenStream);
    MatchExpectedToken(Token::TOKEN_ARRAY_BEGIN, tokenStream);
    bool bMore = tokenStream.Peek().nType != Token::TOKEN_ARRAY_END;
    while (bMore) {
        Parse(array.m_Elements.emplace_back(UnknownElement(nullptr)), tokenStream);
        bMore = MatchNextElement(tokenStream);
    }
    MatchExpectedToken(Token::TOKEN_ARRAY_END, tokenStream);
    --m_nDepth;
}

// A deque takes about 600 bytes even when it is empty, which makes arrays the one costly thing in a text.
void Reader::CountArray(TokenStream& tokenStream)
{
    if (m_nArrays == nMaxArrays) {
        const Token& token = tokenStream.Peek();
        throw ParseException("More than 65536 arrays", token.locBegin, token.locEnd);
    }
    ++m_nArrays;
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
    const bool bNumber = oResult.ptr == pEnd && oResult.ec != std::errc::invalid_argument;
    if (bNumber && oResult.ec == std::errc()) {
        return;
    }
    // A stream makes the largest double or one close to 0 of what does not fit. When it failed it has nothing
    // next, which shows as the byte 0xFF.
    std::istringstream oStream(sNumber);
    oStream.imbue(std::locale::classic());
    oStream >> number.Value();
    if (!bNumber) {
        const char cNext = std::char_traits<char>::to_char_type(oStream.peek());
        throw ParseException(std::string("Unexpected character in NUMBER token: ") + cNext, token.locBegin,
                             token.locEnd);
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
        ThrowUnexpected(token);
    }
    return token.sValue;
}

void Reader::ThrowUnexpected(char c, const InputStream& inputStream)
{
    throw ScanException(std::string("Unexpected character in stream: ") + c, inputStream.GetLocation());
}

void Reader::ThrowUnexpected(const Token& token)
{
    throw ParseException("Unexpected token: " + token.sValue, token.locBegin, token.locEnd);
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
