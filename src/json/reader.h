#pragma once

#include "json/elements.h"

#include <cstddef>
#include <istream>
#include <string>
#include <string_view>
#include <vector>

namespace json {

/**
 * Reads a JSON document from a stream.
 *
 * Beyond the JSON grammar it accepts raw control characters and any bytes of 0x80 and above in strings, and
 * numbers such as 007, 1. and -.5; it knows no \u escape. Only an object stands at the top.
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

    /** The text holds something that is no token. */
    class ScanException : public Exception
    {
    public:
        /** Takes the message and the place. */
        ScanException(const std::string& sMessage, const Location& locError);

        /**
         * The place behind the bytes that were taken so far. A byte that starts no token is not taken and
         * stands right there; a byte that breaks a literal or an escape sequence is taken and stands one
         * before.
         */
        Location m_locError;
    };

    /** The tokens of the text stand in an order that makes no document. */
    class ParseException : public Exception
    {
    public:
        /** Takes the message and where the offending token begins and ends. */
        ParseException(const std::string& sMessage, const Location& locTokenBegin,
                       const Location& locTokenEnd);

        /** Where the token begins. When a token is missing at the end: the end of the last one. */
        Location m_locTokenBegin;
        /** The place behind the token. When a token is missing at the end: the end of the last one. */
        Location m_locTokenEnd;
    };

    /**
     * Reads the stream to its end and appends the members of the one object in it to the object.
     *
     * Throws ScanException or ParseException; a scan error anywhere in the text wins over parse errors. The
     * object may then hold some more members and is of no use; after a scan error the stream stands somewhere
     * behind m_locError. Containers may nest 1024 deep and 65,536 of them may be arrays. Time and memory grow
     * with the size of the text only; the locale has no influence. A stream that cannot be read counts as
     * empty.
     */
    static void Read(Object& object, std::istream& istr);

private:
    struct Token;
    class TokenTypes;
    class InputStream;
    class TokenStream;

    static void Scan(std::vector<Token>& tokens, InputStream& inputStream);
    static std::string MatchValue(int nType, InputStream& inputStream);
    static std::string MatchString(InputStream& inputStream);
    static void MatchQuotationMark(InputStream& inputStream);
    static std::string MatchLiteral(std::string_view sLiteral, InputStream& inputStream);
    static char MatchEscaped(InputStream& inputStream);
    static std::string MatchNumber(InputStream& inputStream);
    static void MatchExpectedString(InputStream& inputStream, std::string_view sExpected);

    void Parse(UnknownElement& element, TokenStream& tokenStream);
    void Parse(Object& object, TokenStream& tokenStream);
    void Parse(Array& array, TokenStream& tokenStream);
    void Parse(String& string, TokenStream& tokenStream);
    void Parse(Number& number, TokenStream& tokenStream);
    void Parse(Boolean& boolean, TokenStream& tokenStream);
    void Parse(Null& null, TokenStream& tokenStream);
    template<class ContainerType>
    void ParseNested(UnknownElement& element, TokenStream& tokenStream);
    void CountArray(TokenStream& tokenStream);
    static std::string& MatchExpectedToken(int nType, TokenStream& tokenStream);
    [[noreturn]] static void ThrowUnexpected(char c, const InputStream& inputStream);
    [[noreturn]] static void ThrowUnexpected(const Token& token);
    static bool MatchNextElement(TokenStream& tokenStream);

    unsigned int m_nDepth = 0;
    unsigned int m_nArrays = 0;
};

} // namespace json
