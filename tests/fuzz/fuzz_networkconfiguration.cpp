// Reads any text as a network configuration, and what it writes of it, too.
#include "network/oviknetworkmanager.h"
#include "json/elements.h"

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize)
{
    OVIK::NetworkConfiguration oDocument;
    try {
        oDocument.fromJSON(QString::fromUtf8(reinterpret_cast<const char*>(pData), int(nSize)));
    } catch (const json::Exception&) {
        return 0;
    }
    OVIK::NetworkConfiguration oAgain;
    if (!oAgain.fromJSON(oDocument.toJSON()) || oAgain.interfaces.size() > oDocument.interfaces.size()) {
        std::abort();
    }
    return 0;
}
