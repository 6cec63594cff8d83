#include "json/reader.h"

#include "json/scanner.h"

#include <algorithm>
#include <charconv>
#include <locale>
#include <set>
#include <sstream>
#include <system_error>

namespace json {
namespace {

constexpr unsigned int s_nMaxDepth = 1024;
// The largest vector of tokens that is kept for the next text, enough for 2000 interfaces.
constexpr std::size_t s_nMaxSpare = 131072;
// Above this many members names are looked up in an index.
constexpr std::size_t s_nMaxUnindexed = 24;

/** Keeps an object's names unique while it is read: a small object is searched, a large one gets an index of
 * sorted names, which no choice of names can slow down. */
class NameIndex
{
public:
    explicit NameIndex(const Object& object) : m_Object(object) {}

    /** Returns whether no other member has the name of the last one. */
    bool AddLast()
    {
        const auto itLast = std::prev(m_Object.End());
        if (m_Object.Size() <= s_nMaxUnindexed) {
            return m_Object.Find(itLast->name) == itLast;
        }
        if (m_Names.empty()) {
            for (auto itMember = m_Object.Begin(); itMember != itLast; ++itMember) {
                m_Names.insert(itMember->name);
            }
        }
        return m_Names.insert(itLast->name).second;
    }

private:
    const Object& m_Object;
    std::set<std::string_view> m_Names;
};

// Reads as much as the stream has available at a time: all of it if it is in memory.
std::string readAll(std::istream& istr)
{
    std::string sText;
    while (istr.peek() != std::char_traits<char>::eof()) {
        const std::size_t nRead = sText.size();
        const auto nMore = std::max<std::streamsize>(istr.rdbuf()->in_avail(), 1);
        sText.resize(nRead + std::size_t(nMore));
        istr.read(&sText[nRead], nMore);
        sText.resize(nRead + std::size_t(istr.gcount()));
    }
    return sText;
}

} // namespace

/** The tokens of the text and the current one. */
class Reader::TokenStream
{
public:
    explicit TokenStream(InputStream& inputStream) : m_InputStream(inputStream)
    {
        m_Tokens.swap(Spare());
        Scan(m_Tokens, inputStream);
        m_itCurrent = m_Tokens.begin();
    }

    ~TokenStream()
    {
        if (m_Tokens.capacity() <= s_nMaxSpare) {
            m_Tokens.clear();
            m_Tokens.swap(Spare());
        }
    }

    TokenStream(const TokenStream&) = delete;
    TokenStream& operator=(const TokenStream&) = delete;

    /** Returns whether the last token was taken. */
    bool EOS() const { return m_itCurrent == m_Tokens.end(); }

    /** Returns the current token; throws at the end. */
    const Token& Peek() const
    {
        if (EOS()) {
            ThrowEnd();
        }
        return *m_itCurrent;
    }

    /** Returns the current token and moves on; throws at the end. */
    const Token& Get()
    {
        const Token& token = Peek();
        ++m_itCurrent;
        return token;
    }

    /** Throws ParseException with the place of the token. */
    [[noreturn]] void Throw(const std::string& sMessage, const Token& token) const
    {
        throw ParseException(sMessage, m_InputStream.GetLocation(token.sText.data()), EndOf(token));
    }

    /** Throws ParseException "Unexpected token: " and the token. */
    [[noreturn]] void ThrowUnexpected(const Token& token) const
    {
        Throw("Unexpected token: " + token.Value(), token);
    }

private:
    // The vector for the next text. Freeing a block this large makes the heap merge the many small ones of
    // documents, and reading a quarter slower.
    static std::vector<Token>& Spare()
    {
        static thread_local std::vector<Token> tokens;
        return tokens;
    }

    [[noreturn]] void ThrowEnd() const
    {
        const Location locEnd = m_Tokens.empty() ? Location() : EndOf(m_Tokens.back());
        throw ParseException("Unexpected end of token stream", locEnd, locEnd);
    }

    Location EndOf(const Token& token) const
    {
        return m_InputStream.GetLocation(token.sText.data() + token.sText.size());
    }

    const InputStream& m_InputStream;
    std::vector<Token> m_Tokens;
    std::vector<Token>::const_iterator m_itCurrent;
};

void Reader::Read(Object& object, std::istream& istr)
{
    Read(object, readAll(istr));
}

void Reader::Read(Object& object, std::string_view sText)
{
    InputStream oInputStream(sText);
    TokenStream oTokenStream(oInputStream);
    Reader().Parse(object, oTokenStream);
    if (!oTokenStream.EOS()) {
        const Token& token = oTokenStream.Peek();
        oTokenStream.Throw("Expected End of token stream; found " + token.Value(), token);
    }
}

void Reader::Parse(UnknownElement& element, TokenStream& tokenStream)
{
    const Token& token = tokenStream.Peek();
    switch (token.nType) {
    case Token::TOKEN_OBJECT_BEGIN:
        return Parse(element.ConvertTo<Object>(), tokenStream);
    case Token::TOKEN_ARRAY_BEGIN:
        return Parse(element.ConvertTo<Array>(), tokenStream);
    case Token::TOKEN_STRING:
        return Parse(element.ConvertTo<String>(), tokenStream);
    case Token::TOKEN_NUMBER:
        return Parse(element.ConvertTo<Number>(), tokenStream);
    case Token::TOKEN_BOOLEAN:
        return Parse(element.ConvertTo<Boolean>(), tokenStream);
    case Token::TOKEN_NULL:
        return Parse(element.ConvertTo<Null>(), tokenStream);
    default:
        tokenStream.ThrowUnexpected(token);
    }
}

void Reader::Parse(Object& object, TokenStream& tokenStream)
{
    OpenContainer(Token::TOKEN_OBJECT_BEGIN, tokenStream);
    NameIndex oNames(object);
    bool bMore = tokenStream.Peek().nType != Token::TOKEN_OBJECT_END;
    while (bMore) {
        const Token& tokenName = MatchExpectedToken(Token::TOKEN_STRING, tokenStream);
        MatchExpectedToken(Token::TOKEN_MEMBER_ASSIGN, tokenStream);
        Object::Member& member = object.m_Members.emplace_back(tokenName.Value());
        Parse(member.element, tokenStream);
        if (!oNames.AddLast()) {
            object.m_Members.pop_back();
            tokenStream.Throw("Duplicate object member token: " + tokenName.Value(), tokenName);
        }
        bMore = MatchNextElement(tokenStream);
    }
    MatchExpectedToken(Token::TOKEN_OBJECT_END, tokenStream);
    --m_nDepth;
}

void Reader::Parse(Array& array, TokenStream& tokenStream)
{
    OpenContainer(Token::TOKEN_ARRAY_BEGIN, tokenStream);
    bool bMore = tokenStream.Peek().nType != Token::TOKEN_ARRAY_END;
    while (bMore) {
        Parse(array.m_Elements.emplace_back(), tokenStream);
        bMore = MatchNextElement(tokenStream);
    }
    MatchExpectedToken(Token::TOKEN_ARRAY_END, tokenStream);
    --m_nDepth;
}

void Reader::OpenContainer(int nType, TokenStream& tokenStream)
{
    const Token& token = MatchExpectedToken(nType, tokenStream);
    if (++m_nDepth > s_nMaxDepth) {
        tokenStream.Throw("Nesting deeper than 1024 levels", token);
    }
}

void Reader::Parse(String& string, TokenStream& tokenStream)
{
    string.Value() = MatchExpectedToken(Token::TOKEN_STRING, tokenStream).Value();
}

void Reader::Parse(Number& number, TokenStream& tokenStream)
{
    const Token& token = MatchExpectedToken(Token::TOKEN_NUMBER, tokenStream);
    const char* pEnd = token.sText.data() + token.sText.size();
    const auto oResult = std::from_chars(token.sText.data(), pEnd, number.Value());
    const bool bNumber = oResult.ptr == pEnd && oResult.ec != std::errc::invalid_argument;
    if (bNumber && oResult.ec == std::errc()) {
        return;
    }
    // A stream reads a value out of range as the largest double or one close to 0.
    std::istringstream oStream(token.Value());
    oStream.imbue(std::locale::classic());
    oStream >> number.Value();
    if (!bNumber) {
        // Kept, see docs/compatibility.md
        const char cNext = std::char_traits<char>::to_char_type(oStream.peek());
        tokenStream.Throw(std::string("Unexpected character in NUMBER token: ") + cNext, token);
    }
}

void Reader::Parse(Boolean& boolean, TokenStream& tokenStream)
{
    boolean.Value() = MatchExpectedToken(Token::TOKEN_BOOLEAN, tokenStream).sText == "true";
}

void Reader::Parse(Null& /*null*/, TokenStream& tokenStream)
{
    MatchExpectedToken(Token::TOKEN_NULL, tokenStream);
}

const Reader::Token& Reader::MatchExpectedToken(int nType, TokenStream& tokenStream)
{
    const Token& token = tokenStream.Get();
    if (token.nType != nType) {
        tokenStream.ThrowUnexpected(token);
    }
    return token;
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
