// Reads any bytes as a document and as a network configuration. What can be read must come out of a second
// round trip as the same text.
#include "platform/oviknetworkmanager.h"
#include "json/jsontext.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize)
{
    const std::string sInput(pData, pData + nSize);
    std::string sText;
    OVIK::NetworkConfiguration oRead;
    OVIK::NetworkConfiguration oAgain;
    try {
        sText = writeText(readText(sInput));
        oRead.fromJSON(QString::fromUtf8(sInput.data(), int(nSize)));
    } catch (const json::Exception&) {
        return 0;
    }
    if (writeText(readText(sText)) != sText || !oAgain.fromJSON(oRead.toJSON()) ||
        oAgain.interfaces.size() > oRead.interfaces.size()) {
        std::abort();
    }
    return 0;
}
