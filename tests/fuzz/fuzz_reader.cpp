// Reads any bytes as a document. What can be read must come out of a second round trip as the same text.
#include "json/jsontext.h"

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize)
{
    json::Object oDocument;
    try {
        oDocument = readText(std::string(pData, pData + nSize));
    } catch (const json::Exception&) {
        return 0;
    }
    const std::string sText = writeText(oDocument);
    if (writeText(readText(sText)) != sText) {
        std::abort();
    }
    return 0;
}
