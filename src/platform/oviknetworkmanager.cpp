#include "platform/oviknetworkmanager.h"

#include "platform/jsonfields.h"

#include <QDebug>

#include <memory>

namespace OVIK {
namespace {

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
    // Kept, see docs/compatibility.md
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

NetworkConfiguration::NetworkConfiguration(const NetworkConfiguration& other)
    : version(other.version), dns(other.dns), hostname(other.hostname), bridge(other.bridge),
      interfaces(copyRecords(other.interfaces))
{
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
    // Kept, see docs/compatibility.md
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
