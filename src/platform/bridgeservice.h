#pragma once

#include "json/elements.h"

#include <QMap>
#include <QString>
#include <QStringList>

namespace OVIK {

/** The bridges of the device. Owns the records in its list; a copy has records of its own. */
class BridgeService
{
public:
    /** One bridge. */
    class BridgeInterface
    {
    public:
        bool operator==(const BridgeInterface& other) const;

        QString bridgeName;
        QStringList bridgedInterfaces;
        /** The spanning tree protocol; read from "std" but written as "stp". */
        bool stp = true;
        /** The forward delay in seconds. */
        int fd = 5;
        /** The options for the DHCP client on the bridge. */
        QString udhcpOpts = QStringLiteral("-t 30 -T 35");
    };

    /** Makes a service that is off and has no bridges. */
    BridgeService() = default;
    BridgeService(const BridgeService& other);
    ~BridgeService();
    BridgeService& operator=(const BridgeService& other);

    /** Reads a text; see the class NetworkConfiguration. */
    bool fromJSON(const QString& text);
    /**
     * Reads an object; interfaces and bridges are added to the present ones. A bridge without a name
     * or with a name already in use is left out after a warning. Always returns true.
     */
    bool fromJSONObject(const json::Object& object);
    /** Builds the object; all keys are always there. */
    json::Object toJSONObject() const;
    /** Builds the object and writes it as text. */
    QString toJSON() const;

    bool operator==(const BridgeService& other) const;

    bool enabled = false;
    QStringList interfaces;
    /** The bridges by name, owned. A null record counts as absent. */
    QMap<QString, BridgeInterface*> list;
};

} // namespace OVIK
