#pragma once

#include "json/elements.h"

#include <QMap>
#include <QString>
#include <QStringList>

#include <algorithm>

/** Moves fields of the network configuration between records and JSON. */
namespace OVIK {

/** The warnings about a text that cannot be read. */
struct sReadWarnings
{
    const char* szEmpty;
    const char* szParseError;
    const char* szScanError;
    const char* szUnknownError;
};

/** Reads the text, as Latin-1, into the object. Returns false if it is empty or not a JSON object, after one
 * of the warnings, with the reader's message if there is one. */
bool readText(const QString& text, const sReadWarnings& warnings, json::Object& object);

/** Reads the text as readText() does and then the record; the result is that of readText(). */
template<class RecordType>
bool readRecord(const QString& text, const sReadWarnings& warnings, RecordType& record)
{
    json::Object object;
    if (!readText(text, warnings, object)) {
        return false;
    }
    record.fromJSONObject(object); // Kept, see docs/compatibility.md
    return true;
}

/** Writes the object as text. */
QString writeText(const json::Object& object);

/** Returns the element as an object, or an empty one if it is something else. */
const json::Object& toObject(const json::UnknownElement& element);

/** Reads a string; throws json::Exception if it is something else. */
QString toString(const json::UnknownElement& element);

/**
 * Read the member of that name; leave the field unchanged if there is none; throw json::Exception if the
 * member has another type. Numbers are truncated towards zero; a value out of range becomes the nearest int,
 * NaN becomes 0. Arrays of strings are appended to the list.
 */
void readMember(const json::Object& object, const char* key, QString& field);
void readMember(const json::Object& object, const char* key, int& field);
void readMember(const json::Object& object, const char* key, bool& field);
void readMember(const json::Object& object, const char* key, QStringList& field);

/** Appends the string under entryKey of each object in an array, or an empty one if there is none. */
void readEntries(const json::Object& object, const char* key, const char* entryKey, QStringList& field);

/** Returns the string as Latin-1. */
json::String toJSONString(const QString& string);
/** Returns an array of the strings. */
json::Array toJSONArray(const QStringList& strings);
/** Returns an array of objects with this one key each. */
json::Array toJSONArray(const QStringList& strings, const char* key);

/** Add a member, unless the string is empty or the number 0. */
void writeWhenSet(json::Object& object, const char* key, const QString& field);
void writeWhenSet(json::Object& object, const char* key, int field);

/** Returns copies of the records, which the caller owns; null ones are left out. */
template<class RecordType>
QMap<QString, RecordType*> copyRecords(const QMap<QString, RecordType*>& from)
{
    QMap<QString, RecordType*> copies;
    for (auto record = from.begin(); record != from.end(); ++record) {
        if (record.value()) {
            copies.insert(record.key(), new RecordType(*record.value()));
        }
    }
    return copies;
}

/** Compares owned records by key and content; null ones are left out. */
template<class RecordType>
bool equalRecords(const QMap<QString, RecordType*>& left, const QMap<QString, RecordType*>& right)
{
    const auto isNull = [](const RecordType* record) { return record == nullptr; };
    auto first = left.begin();
    auto second = right.begin();
    for (;; ++first, ++second) {
        first = std::find_if_not(first, left.end(), isNull);
        second = std::find_if_not(second, right.end(), isNull);
        if (first == left.end() || second == right.end()) {
            return first == left.end() && second == right.end();
        }
        if (first.key() != second.key() || !(**first == **second)) {
            return false;
        }
    }
}

} // namespace OVIK
