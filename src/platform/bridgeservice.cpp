#include "platform/bridgeservice.h"

#include "platform/jsonfields.h"

#include <QDebug>

#include <memory>

namespace OVIK {
namespace {

using BridgeInterface = BridgeService::BridgeInterface;

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
    // Kept, see docs/compatibility.md
    readMember(object, "std", bridge->stp);
    readMember(object, "fd", bridge->fd);
    readMember(object, "udhcpc_opts", bridge->udhcpOpts);
    const QString name = bridge->bridgeName;
    list.insert(name, bridge.release());
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

bool BridgeService::BridgeInterface::operator==(const BridgeInterface& other) const
{
    return bridgeName == other.bridgeName && bridgedInterfaces == other.bridgedInterfaces &&
           stp == other.stp && fd == other.fd && udhcpOpts == other.udhcpOpts;
}

BridgeService::BridgeService(const BridgeService& other)
    : enabled(other.enabled), interfaces(other.interfaces), list(copyRecords(other.list))
{
}

BridgeService::~BridgeService()
{
    qDeleteAll(list);
}

BridgeService& BridgeService::operator=(const BridgeService& other)
{
    BridgeService copy(other);
    enabled = copy.enabled;
    interfaces = copy.interfaces;
    list.swap(copy.list);
    return *this;
}

bool BridgeService::fromJSON(const QString& text)
{
    return readRecord(text,
                      {"Trying to parse empty bridge json!", "Parse error in bridge service json",
                       "Scan error in bridge service json ", "Unknown bridge service json error "},
                      *this);
}

bool BridgeService::fromJSONObject(const json::Object& object)
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

json::Object BridgeService::toJSONObject() const
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

QString BridgeService::toJSON() const
{
    return writeText(toJSONObject());
}

bool BridgeService::operator==(const BridgeService& other) const
{
    return enabled == other.enabled && interfaces == other.interfaces && equalRecords(list, other.list);
}

} // namespace OVIK
