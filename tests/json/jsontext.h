#pragma once

#include "json/reader.h"
#include "json/writer.h"

#include <sstream>

// Reads a document from text.
inline json::Object readText(std::string_view sText)
{
    json::Object oDocument;
    json::Reader::Read(oDocument, sText);
    return oDocument;
}

// Writes a document as text.
inline std::string writeText(const json::Object& oDocument)
{
    std::ostringstream oStream;
    json::Writer::Write(oDocument, oStream);
    return oStream.str();
}
