#pragma once

#include "json/elements.h"

#include <istream>
#include <string>
#include <string_view>
#include <vector>

namespace json {

/**
 * Reads a JSON document from a stream or a text: a first pass splits the whole text into tokens, a second one
 * builds the elements.
 *
 * Beyond the JSON grammar it accepts raw control characters and any bytes of 0x80 and above in strings, and
 * numbers such as 007, 1. and -.5; it has no \u escape. The top-level element must be an object.
 */
class Reader
{
public:
    /** A place in the text; all values count from 0 and count bytes. */
    struct Location
    {
        /** The number of line feeds before. */
        unsigned int m_nLine = 0;
        /** The number of bytes since the last line feed. */
        unsigned int m_nLineOffset = 0;
        /** The number of bytes before. */
        unsigned int m_nDocOffset = 0;
    };

    /** The text contains something that is not a token. */
    class ScanException : public Exception
    {
    public:
        /** Takes the message and the place. */
        ScanException(const std::string& sMessage, const Location& locError)
            : Exception(sMessage), m_locError(locError)
        {
        }

        /** Position of a byte that starts no token, or after a byte that breaks a literal or an escape
         * sequence. */
        Location m_locError;
    };

    /** The tokens do not form a document. */
    class ParseException : public Exception
    {
    public:
        /** Takes the message and where the offending token begins and ends. */
        ParseException(const std::string& sMessage, const Location& locTokenBegin,
                       const Location& locTokenEnd)
            : Exception(sMessage), m_locTokenBegin(locTokenBegin), m_locTokenEnd(locTokenEnd)
        {
        }

        /** Where the token begins. When a token is missing at the end: the end of the last one. */
        Location m_locTokenBegin;
        /** The place behind the token. When a token is missing at the end: the end of the last one. */
        Location m_locTokenEnd;
    };

    /**
     * Reads the stream to its end and appends the members of the one object in it to the object. A stream
     * that cannot be read counts as empty.
     *
     * Throws ScanException or ParseException; a scan error anywhere in the text wins over parse errors. After
     * a parse error the object may hold additional members; discard it. A text may nest containers 1024 deep.
     * Time and memory grow in proportion to the text; the locale has no influence.
     */
    static void Read(Object& object, std::istream& istr);
    /** Reads a text in the same way. */
    static void Read(Object& object, std::string_view sText);

private:
    struct Token;
    class InputStream;
    class TokenStream;

    static void Scan(std::vector<Token>& tokens, InputStream& inputStream);
    static void SkipWhiteSpace(InputStream& inputStream);
    static Token MatchToken(InputStream& inputStream);
    static bool MatchString(InputStream& inputStream);
    static void MatchEscaped(InputStream& inputStream);
    static void MatchNumber(InputStream& inputStream);
    static void MatchExpectedString(InputStream& inputStream, std::string_view sExpected);

    void Parse(UnknownElement& element, TokenStream& tokenStream);
    void Parse(Object& object, TokenStream& tokenStream);
    void Parse(Array& array, TokenStream& tokenStream);
    void Parse(String& string, TokenStream& tokenStream);
    void Parse(Number& number, TokenStream& tokenStream);
    void Parse(Boolean& boolean, TokenStream& tokenStream);
    void Parse(Null& null, TokenStream& tokenStream);
    void OpenContainer(int nType, TokenStream& tokenStream);
    static const Token& MatchExpectedToken(int nType, TokenStream& tokenStream);
    static bool MatchNextElement(TokenStream& tokenStream);

    unsigned int m_nDepth = 0;
};

} // namespace json
