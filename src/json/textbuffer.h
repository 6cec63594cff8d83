#pragma once

#include <streambuf>
#include <string_view>

namespace json {

/** Lets a stream read a text where it is, without a copy of it. */
class TextBuffer : public std::streambuf
{
public:
    /** Reads the bytes that sText shows; they must stay unchanged as long as the buffer is read. */
    explicit TextBuffer(std::string_view sText)
    {
        // Nothing writes through these: there is no put area, and bytes are only put back as they were.
        char* pText = const_cast<char*>(sText.data());
        setg(pText, pText, pText + sText.size());
    }
};

} // namespace json
