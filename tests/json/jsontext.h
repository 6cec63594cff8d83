#pragma once

#include "json/reader.h"
#include "json/writer.h"

#include <sstream>
#include <string>

// Reads a document from text.
inline json::Object readText(const std::string& sText)
{
    json::Object oDocument;
    json::Reader::Read(oDocument, std::string_view(sText));
    return oDocument;
}

// Writes a document as text.
inline std::string writeText(const json::Object& oDocument)
{
    std::ostringstream oStream;
    json::Writer::Write(oDocument, oStream);
    return oStream.str();
}
