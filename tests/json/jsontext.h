#pragma once

#include "json/reader.h"
#include "json/writer.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>

#include <sstream>
#include <string>
#include <utility>

// Reads a document from text.
inline json::Object readText(const std::string& sText)
{
    std::istringstream oStream(sText);
    json::Object oDocument;
    json::Reader::Read(oDocument, oStream);
    return oDocument;
}

// Writes a document as text.
inline std::string writeText(const json::Object& oDocument)
{
    std::ostringstream oStream;
    json::Writer::Write(oDocument, oStream);
    return oStream.str();
}

// Returns the rows of a table in a file; none when it cannot be read.
inline QJsonArray readTable(const QString& strPath)
{
    QFile oFile(strPath);
    return oFile.open(QIODevice::ReadOnly) ? QJsonDocument::fromJson(oFile.readAll()).array() : QJsonArray();
}

// Builds objects and arrays that hold each other by turns, nLevels deep; a copy at each level would take
// ages.
inline json::UnknownElement nest(int nLevels, json::UnknownElement oInnermost)
{
    for (int n = 0; n < nLevels; ++n) {
        if (n % 2 == 0) {
            json::Array oArray;
            oArray.Insert(std::move(oInnermost));
            oInnermost = std::move(oArray);
        } else {
            json::Object oObject;
            oObject["a"] = std::move(oInnermost);
            oInnermost = std::move(oObject);
        }
    }
    return oInnermost;
}
