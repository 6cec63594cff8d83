// Reads arbitrary bytes as a document and as a network configuration. A second round trip of what can be read
// must give the same text.
#include "platform/oviknetworkmanager.h"
#include "support/difference.h"
#include "json/jsontext.h"

#include <cstdint>
#include <iostream>

static void compare(const char* szWhat, const QByteArray& oActual, const QByteArray& oExpected)
{
    if (oActual != oExpected) {
        std::cerr << szWhat << " differs " << difference(oActual, oExpected).data() << std::endl;
        std::abort();
    }
}

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
    compare("The document", QByteArray::fromStdString(writeText(readText(sText))),
            QByteArray::fromStdString(sText));
    if (!oAgain.fromJSON(oRead.toJSON())) {
        compare("The configuration", "refused", oRead.toJSON().toUtf8());
    }
    if (oAgain.interfaces.size() > oRead.interfaces.size()) {
        compare("The configuration", oAgain.toJSON().toUtf8(), oRead.toJSON().toUtf8());
    }
    return 0;
}
