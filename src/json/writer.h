#pragma once

#include "json/elements.h"

#include <ostream>
#include <streambuf>
#include <string_view>

namespace json {

/** Writes a document as JSON text on one line; only " : " between a member's name and its value has blanks.
 */
class Writer : private ConstVisitor
{
public:
    /**
     * Writes the object and flushes the stream; errors are left in the stream's state.
     *
     * Strings are written unchanged except for the quotation mark, the backslash, \\b, \\f, \\n, \\r and \\t,
     * which are escaped. Numbers are written with a precision of 20, which stays set on the stream, and with
     * the stream's number format flags, but never with a locale's digits. Infinities and NaN, which JSON
     * lacks, are written as a stream prints them.
     */
    static void Write(const Object& object, std::ostream& ostr);

private:
    explicit Writer(std::ostream& ostr) : m_ostr(ostr), m_Buffer(*ostr.rdbuf()) {}

    void Visit(const Array& array) override;
    void Visit(const Object& object) override;
    void Visit(const Number& number) override;
    void Visit(const String& string) override;
    void Visit(const Boolean& boolean) override;
    void Visit(const Null& null) override;

    void WriteString(std::string_view sValue);
    void WriteText(std::string_view sText);
    void WriteByte(char c);

    std::ostream& m_ostr;
    [[maybe_unused]] int m_nTabDepth = 0; // Kept, see docs/compatibility.md
    std::streambuf& m_Buffer;
    bool m_bFailed = false;
};

} // namespace json
