#pragma once

#include "json/reader.h"

#include <string>
#include <string_view>

namespace json {

/** A token: its type and its text. */
struct Reader::Token
{
    /** What a token is. */
    enum Type : unsigned char {
        TOKEN_OBJECT_BEGIN,
        TOKEN_OBJECT_END,
        TOKEN_ARRAY_BEGIN,
        TOKEN_ARRAY_END,
        TOKEN_NEXT_ELEMENT,
        TOKEN_MEMBER_ASSIGN,
        TOKEN_STRING,
        TOKEN_NUMBER,
        TOKEN_BOOLEAN,
        TOKEN_NULL
    };

    /** Returns the type of the tokens that begin with c; TOKEN_NUMBER also where none does. */
    static Type TypeOf(char c);
    /** Returns the contents of a string, its escape sequences replaced; the text of any other token. */
    std::string Value() const;

    Type nType;
    /** Whether the token is a string with escape sequences. */
    bool bEscaped;
    /** The token as it stands in the text, a string with its quotation marks. */
    std::string_view sText;
};

/** The text and the current position in it. */
class Reader::InputStream
{
public:
    /** Starts where the text begins; the text must outlive this. */
    explicit InputStream(std::string_view sText)
        : m_pBegin(sText.data()), m_pNext(m_pBegin), m_pEnd(m_pBegin + sText.size())
    {
    }

    /** Returns whether the place is at the end, where Peek() and Get() must not be called. */
    bool EOS() const { return m_pNext == m_pEnd; }
    /** Returns the next byte. */
    char Peek() const { return *m_pNext; }
    /** Takes the next byte. */
    char Get() { return *m_pNext++; }
    /** Takes the next nBytes bytes, which must be there. */
    void Skip(std::size_t nBytes) { m_pNext += nBytes; }

    /** Returns the current place. */
    const char* Place() const { return m_pNext; }
    /** Returns the text from the place on. */
    std::string_view Rest() const { return {m_pNext, std::size_t(m_pEnd - m_pNext)}; }
    /** Returns where a place in the text is, counting the lines before it. */
    Location GetLocation(const char* pPlace) const;
    /** Returns where the current place is. */
    Location GetLocation() const { return GetLocation(m_pNext); }

private:
    const char* m_pBegin;
    const char* m_pNext;
    const char* m_pEnd;
};

} // namespace json
