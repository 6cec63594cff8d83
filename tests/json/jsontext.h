#pragma once

#include "json/reader.h"
#include "json/writer.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>

#include <sstream>
#include <string>

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
