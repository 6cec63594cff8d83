#include "network/oviknetworkmanager.h"

#include "json/reader.h"
#include "json/textbuffer.h"
#include "json/writer.h"

#include <QDebug>

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <sstream>
#include <string>

namespace OVIK {
namespace {

/** The warnings about a text that cannot be read. */
struct sReadWarnings
{
    const char* szEmpty;
    const char* szParseError;
    const char* szScanError;
    const char* szUnknownError;
};

bool readText(const QString& text, const sReadWarnings& warnings, json::Object& object)
{
    if (text.isEmpty()) {
        qWarning() << warnings.szEmpty;
        return false;
    }
    try {
        const QByteArray bytes = text.toLatin1();
        json::TextBuffer buffer({bytes.constData(), std::size_t(bytes.size())});
        std::istream stream(&buffer);
        json::Reader::Read(object, stream);
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

// That the text could be read is all that the result tells: the device's other software requires it so.
template<class RecordType>
bool readRecord(const QString& text, const sReadWarnings& warnings, RecordType& record)
{
    json::Object object;
    if (!readText(text, warnings, object)) {
        return false;
    }
    record.fromJSONObject(object);
    return true;
}

QString writeText(const json::Object& object)
{
    std::ostringstream stream;
    json::Writer::Write(object, stream);
    const std::string text = stream.str();
    return QString::fromLatin1(text.data(), int(text.size()));
}

int toInt(const json::UnknownElement& element)
{
    const double number = element.CastTo<json::Number>();
    if (std::isnan(number)) {
        return 0;
    }
    return int(std::clamp<double>(number, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()));
}

QString toString(const json::UnknownElement& element)
{
    return QString::fromStdString(element.CastTo<json::String>());
}

/** Returns the element as an object, an empty one when it is something else. */
const json::Object& toObject(const json::UnknownElement& element)
{
    static const json::Object empty;
    const auto* object = element.CastOrNull<json::Object>();
    return object ? *object : empty;
}

/** Returns the string under a key, an empty one when there is none or something else. */
QString stringOrEmpty(const json::Object& object, const char* key)
{
    const auto member = object.Find(key);
    const auto* string = member != object.End() ? member->element.CastOrNull<json::String>() : nullptr;
    return string ? QString::fromStdString(string->Value()) : QString();
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

/** Builds an array of objects that have the one key each. */
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

/** Appends the strings of an array. */
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

/** Appends the string under entryKey of each object in an array, an empty one where there is none. */
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

/** Copies owned records, null ones left out. When memory runs out the target, empty before, owns what was
 * copied. */
template<class RecordType>
void copyRecords(const QMap<QString, RecordType*>& from, QMap<QString, RecordType*>& to)
{
    for (auto record = from.begin(); record != from.end(); ++record) {
        if (record.value()) {
            RecordType*& copy = to[record.key()];
            copy = new RecordType(*record.value());
        }
    }
}

/** Compares owned records by key and content, null ones left out. */
template<class RecordType>
bool equalRecords(QMap<QString, RecordType*> left, QMap<QString, RecordType*> right)
{
    for (auto* records : {&left, &right}) {
        for (const QString& name : records->keys(nullptr)) {
            records->remove(name);
        }
    }
    return left.keys() == right.keys() &&
           std::equal(left.begin(), left.end(), right.begin(),
                      [](const RecordType* first, const RecordType* second) { return *first == *second; });
}

using BridgeInterface = NetworkConfiguration::BridgeService::BridgeInterface;

/** Reads one entry of the list of bridges; leaves it out, after a warning, when its name is missing or taken.
 */
void readBridge(const json::Object& object, QMap<QString, BridgeInterface*>& list)
{
    if (object.Find("name") == object.End()) {
        qWarning() << "Missing bridge name in json";
        return;
    }
    auto bridge = std::make_unique<BridgeInterface>();
    readMember(object, "name", bridge->bridgeName);
    if (object.Find("interfaces") == object.End()) {
        qWarning() << "Missing bridge interfaces list in json from bridge " << bridge->bridgeName;
    }
    if (list.contains(bridge->bridgeName)) {
        qWarning() << "Bridge " << bridge->bridgeName << " aready inserted";
        return;
    }
    readMember(object, "interfaces", bridge->bridgedInterfaces);
    // Read from "std" but written as "stp": the device's other software requires it so.
    readMember(object, "std", bridge->stp);
    readMember(object, "fd", bridge->fd);
    readMember(object, "udhcpc_opts", bridge->udhcpOpts);
    const QString name = bridge->bridgeName;
    list.insert(name, bridge.release());
}

/** Reads all interfaces; replaces the document's only when none is refused. */
bool readInterfaces(const json::Array& array, NetworkConfiguration& document)
{
    NetworkConfiguration fresh;
    for (auto element = array.Begin(); element != array.End(); ++element) {
        auto interface = std::make_unique<NetworkConfiguration::Interface>();
        if (!interface->fromJSONObject(toObject(*element))) {
            return false;
        }
        const QString name = interface->name;
        if (fresh.interfaces.contains(name)) {
            qWarning() << "Interface " << name << " already defined";
            return false;
        }
        fresh.interfaces.insert(name, interface.release());
    }
    document.interfaces.swap(fresh.interfaces);
    return true;
}

json::Object bridgeToJSONObject(const BridgeInterface& bridge)
{
    json::Object object;
    object["name"] = toJSONString(bridge.bridgeName);
    object["interfaces"] = toJSONArray(bridge.bridgedInterfaces);
    object["stp"] = json::Boolean(bridge.stp);
    object["fd"] = json::Number(bridge.fd);
    object["udhcpc_opts"] = toJSONString(bridge.udhcpOpts);
    return object;
}

} // namespace

bool NetworkConfiguration::Interface::fromJSON(const QString& text)
{
    return readRecord(text,
                      {"Trying to parse empty network interface json!",
                       "Parse error in network interface json", "Scan error in network interface json ",
                       "Unknown network interface json error "},
                      *this);
}

bool NetworkConfiguration::Interface::fromJSONObject(const json::Object& object)
{
    const auto member = object.Find("name");
    if (member == object.End()) {
        qWarning() << "Cannot find interface name in json";
        return false;
    }
    const QString newName = toString(member->element);
    if (newName.isEmpty()) {
        qWarning() << "Empty interface name in json";
        return false;
    }
    name = newName;
    readMember(object, "label", label);
    readMember(object, "ip_address", ip_address);
    readMember(object, "actual_ip_address", actual_ip_address);
    readMember(object, "netmask", netmask);
    readMember(object, "actual_netmask", actual_netmask);
    readMember(object, "gateway_ip", gateway_ip);
    readMember(object, "actual_gateway_ip", actual_gateway_ip);
    readMember(object, "metric", metric);
    readMember(object, "actual_metric", actual_metric);
    readMember(object, "dhcp", dhcp);
    readMember(object, "readonly", readOnly);
    readMember(object, "virtual", virt);
    readMember(object, "hidden", hidden);
    readMember(object, "configured", configured);
    readMember(object, "mac_address", mac_address);
    return true;
}

json::Object NetworkConfiguration::Interface::toJSONObject() const
{
    json::Object object;
    object["name"] = toJSONString(name);
    writeWhenSet(object, "label", label);
    writeWhenSet(object, "mac_address", mac_address);
    writeWhenSet(object, "ip_address", ip_address);
    writeWhenSet(object, "netmask", netmask);
    writeWhenSet(object, "gateway_ip", gateway_ip);
    writeWhenSet(object, "metric", metric);
    object["dhcp"] = json::Boolean(dhcp);
    object["configured"] = json::Boolean(configured);
    object["readonly"] = json::Boolean(readOnly);
    object["virtual"] = json::Boolean(virt);
    object["hidden"] = json::Boolean(hidden);
    writeWhenSet(object, "actual_netmask", actual_netmask);
    writeWhenSet(object, "actual_ip_address", actual_ip_address);
    writeWhenSet(object, "actual_gateway_ip", actual_gateway_ip);
    writeWhenSet(object, "actual_metric", actual_metric);
    return object;
}

QString NetworkConfiguration::Interface::toJSON() const
{
    return writeText(toJSONObject());
}

bool NetworkConfiguration::Interface::operator==(const Interface& other) const
{
    return name == other.name && label == other.label && readOnly == other.readOnly && dhcp == other.dhcp &&
           metric == other.metric && actual_metric == other.actual_metric && netmask == other.netmask &&
           actual_netmask == other.actual_netmask && mac_address == other.mac_address &&
           ip_address == other.ip_address && actual_ip_address == other.actual_ip_address &&
           gateway_ip == other.gateway_ip && actual_gateway_ip == other.actual_gateway_ip &&
           virt == other.virt && hidden == other.hidden && configured == other.configured;
}

bool NetworkConfiguration::Dns::fromJSON(const QString& text)
{
    // The wording of the first and the last text is what the device's other software requires.
    return readRecord(text,
                      {"Trying to parse dns json!", "Parse error in dns json", "Scan error in dns json ",
                       "Unknown network interface json error "},
                      *this);
}

bool NetworkConfiguration::Dns::fromJSONObject(const json::Object& object)
{
    nameservers.clear();
    search.clear();
    readEntries(object, "servers", "ip", nameservers);
    readEntries(object, "search", "name", search);
    return true;
}

json::Object NetworkConfiguration::Dns::toJSONObject() const
{
    json::Object object;
    object["servers"] = toJSONArray(nameservers, "ip");
    object["search"] = toJSONArray(search, "name");
    return object;
}

QString NetworkConfiguration::Dns::toJSON() const
{
    return writeText(toJSONObject());
}

bool NetworkConfiguration::Dns::operator==(const Dns& other) const
{
    return nameservers == other.nameservers && search == other.search;
}

bool NetworkConfiguration::BridgeService::BridgeInterface::operator==(const BridgeInterface& other) const
{
    return bridgeName == other.bridgeName && bridgedInterfaces == other.bridgedInterfaces &&
           stp == other.stp && fd == other.fd && udhcpOpts == other.udhcpOpts;
}

NetworkConfiguration::BridgeService::BridgeService(const BridgeService& other)
    // Once this is done the destructor runs, should the copying below fail.
    : BridgeService()
{
    enabled = other.enabled;
    interfaces = other.interfaces;
    copyRecords(other.list, list);
}

NetworkConfiguration::BridgeService::~BridgeService()
{
    qDeleteAll(list);
}

NetworkConfiguration::BridgeService&
NetworkConfiguration::BridgeService::operator=(const BridgeService& other)
{
    BridgeService copy(other);
    enabled = copy.enabled;
    interfaces = copy.interfaces;
    list.swap(copy.list);
    return *this;
}

bool NetworkConfiguration::BridgeService::fromJSON(const QString& text)
{
    return readRecord(text,
                      {"Trying to parse empty bridge json!", "Parse error in bridge service json",
                       "Scan error in bridge service json ", "Unknown bridge service json error "},
                      *this);
}

bool NetworkConfiguration::BridgeService::fromJSONObject(const json::Object& object)
{
    readMember(object, "enabled", enabled);
    readMember(object, "interfaces", interfaces);
    const auto member = object.Find("list");
    if (member == object.End()) {
        return true;
    }
    const json::Array& bridges = member->element;
    for (auto element = bridges.Begin(); element != bridges.End(); ++element) {
        readBridge(*element, list);
    }
    return true;
}

json::Object NetworkConfiguration::BridgeService::toJSONObject() const
{
    json::Array bridges;
    for (const BridgeInterface* entry : list) {
        if (entry) {
            bridges.Insert(bridgeToJSONObject(*entry));
        }
    }
    json::Object object;
    object["enabled"] = json::Boolean(enabled);
    object["interfaces"] = toJSONArray(interfaces);
    object["list"] = std::move(bridges);
    return object;
}

QString NetworkConfiguration::BridgeService::toJSON() const
{
    return writeText(toJSONObject());
}

bool NetworkConfiguration::BridgeService::operator==(const BridgeService& other) const
{
    return enabled == other.enabled && interfaces == other.interfaces && equalRecords(list, other.list);
}

NetworkConfiguration::NetworkConfiguration(const NetworkConfiguration& other)
    // Once this is done the destructor runs, should the copying below fail.
    : NetworkConfiguration()
{
    version = other.version;
    dns = other.dns;
    hostname = other.hostname;
    bridge = other.bridge;
    copyRecords(other.interfaces, interfaces);
}

NetworkConfiguration::~NetworkConfiguration()
{
    qDeleteAll(interfaces);
}

NetworkConfiguration& NetworkConfiguration::operator=(const NetworkConfiguration& other)
{
    NetworkConfiguration copy(other);
    version = copy.version;
    dns = copy.dns;
    hostname = copy.hostname;
    bridge = copy.bridge;
    interfaces.swap(copy.interfaces);
    return *this;
}

bool NetworkConfiguration::fromJSON(const QString& text)
{
    return readRecord(text,
                      {"Trying to parse empty network configuration json!",
                       "Parse error in network manager json", "Scan error in network manager json ",
                       "Unknown network manager json error "},
                      *this);
}

bool NetworkConfiguration::fromJSONObject(const json::Object& object)
{
    if (object.Find("version") == object.End()) {
        qWarning() << "Missing required field version, abort network configuration parsing";
        return false;
    }
    int newVersion = 0;
    readMember(object, "version", newVersion);
    // The version held counts, not the one read: the device's other software requires it so.
    if (version != 0) {
        qWarning() << "Unsupported network manager version " << newVersion;
        return false;
    }
    version = newVersion;
    readMember(object, "hostname", hostname);
    const auto dnsMember = object.Find("dns");
    if (dnsMember != object.End()) {
        Dns newDns;
        if (newDns.fromJSONObject(dnsMember->element)) {
            dns = newDns;
        }
    }
    const auto bridgeMember = object.Find("bridge");
    if (bridgeMember != object.End()) {
        BridgeService newBridge;
        if (!newBridge.fromJSONObject(bridgeMember->element)) {
            return false;
        }
        bridge = newBridge;
    }
    const auto interfacesMember = object.Find("interfaces");
    return interfacesMember == object.End() || readInterfaces(interfacesMember->element, *this);
}

json::Object NetworkConfiguration::toJSONObject() const
{
    json::Array interfaceObjects;
    for (const Interface* interface : interfaces) {
        if (interface) {
            interfaceObjects.Insert(interface->toJSONObject());
        }
    }
    json::Object object;
    object["version"] = json::Number(version);
    object["hostname"] = toJSONString(hostname);
    object["dns"] = dns.toJSONObject();
    object["bridge"] = bridge.toJSONObject();
    object["interfaces"] = std::move(interfaceObjects);
    return object;
}

QString NetworkConfiguration::toJSON() const
{
    return writeText(toJSONObject());
}

bool NetworkConfiguration::operator==(const NetworkConfiguration& other) const
{
    return version == other.version && dns == other.dns && hostname == other.hostname &&
           bridge == other.bridge && equalRecords(interfaces, other.interfaces);
}

} // namespace OVIK
