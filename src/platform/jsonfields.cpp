#include "platform/jsonfields.h"

#include "json/reader.h"
#include "json/writer.h"

#include <QDebug>

#include <cmath>
#include <limits>
#include <sstream>
#include <string>

namespace OVIK {
namespace {

int toInt(const json::UnknownElement& element)
{
    const double number = element.CastTo<json::Number>();
    if (std::isnan(number)) {
        return 0;
    }
    return int(std::clamp<double>(number, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()));
}

/** Returns the string under a key, or an empty one if it is missing or something else. */
QString stringOrEmpty(const json::Object& object, const char* key)
{
    const auto member = object.Find(key);
    const auto* string = member != object.End() ? member->element.CastOrNull<json::String>() : nullptr;
    return string ? QString::fromStdString(string->Value()) : QString();
}

} // namespace

bool readText(const QString& text, const sReadWarnings& warnings, json::Object& object)
{
    if (text.isEmpty()) {
        qWarning() << warnings.szEmpty;
        return false;
    }
    try {
        const QByteArray bytes = text.toLatin1();
        json::Reader::Read(object, {bytes.constData(), std::size_t(bytes.size())});
        return true;
    } catch (const json::Reader::ParseException& e) {
        qWarning() << warnings.szParseError << e.what();
    } catch (const json::Reader::ScanException& e) {
        qWarning() << warnings.szScanError << e.what();
    } catch (...) {
        qWarning() << warnings.szUnknownError;
    }
    return false;
}

QString writeText(const json::Object& object)
{
    std::ostringstream stream;
    json::Writer::Write(object, stream);
    const std::string text = stream.str();
    return QString::fromLatin1(text.data(), int(text.size()));
}

QString toString(const json::UnknownElement& element)
{
    return QString::fromStdString(element.CastTo<json::String>());
}

const json::Object& toObject(const json::UnknownElement& element)
{
    static const json::Object empty;
    const auto* object = element.CastOrNull<json::Object>();
    return object ? *object : empty;
}

json::String toJSONString(const QString& string)
{
    return string.toLatin1().toStdString();
}

json::Array toJSONArray(const QStringList& strings)
{
    json::Array array;
    for (const QString& string : strings) {
        array.Insert(toJSONString(string));
    }
    return array;
}

json::Array toJSONArray(const QStringList& strings, const char* key)
{
    json::Array array;
    for (const QString& string : strings) {
        json::Object entry;
        entry[key] = toJSONString(string);
        array.Insert(std::move(entry));
    }
    return array;
}

void readMember(const json::Object& object, const char* key, QString& field)
{
    const auto member = object.Find(key);
    if (member != object.End()) {
        field = toString(member->element);
    }
}

void readMember(const json::Object& object, const char* key, int& field)
{
    const auto member = object.Find(key);
    if (member != object.End()) {
        field = toInt(member->element);
    }
}

void readMember(const json::Object& object, const char* key, bool& field)
{
    const auto member = object.Find(key);
    if (member != object.End()) {
        field = member->element.CastTo<json::Boolean>();
    }
}

void readMember(const json::Object& object, const char* key, QStringList& field)
{
    const auto member = object.Find(key);
    if (member == object.End()) {
        return;
    }
    const json::Array& array = member->element;
    for (auto element = array.Begin(); element != array.End(); ++element) {
        field.append(toString(*element));
    }
}

void readEntries(const json::Object& object, const char* key, const char* entryKey, QStringList& field)
{
    const auto member = object.Find(key);
    if (member == object.End()) {
        return;
    }
    const json::Array& array = member->element;
    for (auto element = array.Begin(); element != array.End(); ++element) {
        field.append(stringOrEmpty(toObject(*element), entryKey));
    }
}

void writeWhenSet(json::Object& object, const char* key, const QString& field)
{
    if (!field.isEmpty()) {
        object[key] = toJSONString(field);
    }
}

void writeWhenSet(json::Object& object, const char* key, int field)
{
    if (field != 0) {
        object[key] = json::Number(field);
    }
}

} // namespace OVIK
