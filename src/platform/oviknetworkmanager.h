#pragma once

#include "platform/bridgeservice.h"

#include "json/elements.h"

#include <QMap>
#include <QString>
#include <QStringList>

namespace OVIK {

/**
 * The network configuration that the platform service exchanges with the panel as JSON text. Owns its
 * interfaces and bridges; a copy has records of its own.
 *
 * Text and bytes: fromJSON() turns its text into Latin-1 bytes, strings in the JSON are decoded as UTF-8, and
 * strings are written as Latin-1 bytes. Only ASCII survives a round trip. Kept, see docs/compatibility.md
 *
 * In all classes:
 * - fromJSON() reads a text. Returns false after one warning if it is empty or not a JSON object.
 * Returns true otherwise, even when fromJSONObject() refused what the text says. Kept, see
 * docs/compatibility.md
 * - fromJSONObject() reads an object and ignores unknown keys. Returns false if it refuses the object.
 * - Both throw json::Exception if a known key has a value of the wrong type; what was read before is kept.
 * - Numbers are truncated towards zero; a value out of range becomes the nearest int, NaN becomes 0.
 * - toJSONObject() and toJSON() write the keys in the order that the service documents.
 */
class NetworkConfiguration
{
public:
    /** One network interface. Addresses, masks and gateways are dotted quads; nothing checks their form. */
    class Interface
    {
    public:
        ~Interface() = default;

        /** Reads a text; see the class NetworkConfiguration. */
        bool fromJSON(const QString& text);
        /** Reads an object. Absent keys leave their field as it is. Returns false without a name, after a
         * warning. */
        bool fromJSONObject(const json::Object& object);
        /** Builds the object; empty strings and metrics of 0 are left out, the name and the flags never. */
        json::Object toJSONObject() const;
        /** Builds the object and writes it as text. */
        QString toJSON() const;

        bool operator==(const Interface& other) const;

        QString name;
        QString label;
        bool readOnly = true;
        bool dhcp = false;
        /** The configured metric; actual_ fields hold what is in force on the device. */
        int metric = 0;
        int actual_metric = 0;
        QString netmask;
        QString actual_netmask;
        QString mac_address;
        QString ip_address;
        QString actual_ip_address;
        QString gateway_ip;
        QString actual_gateway_ip;
        bool virt = true;
        bool hidden = true;
        bool configured = false;
    };

    /** The DNS settings. */
    class Dns
    {
    public:
        /** Reads a text; see the class NetworkConfiguration. */
        bool fromJSON(const QString& text);
        /** Replaces both lists; an entry without an address or name becomes an empty string. Always returns
         * true. */
        bool fromJSONObject(const json::Object& object);
        /** Builds the object; both lists are always there. */
        json::Object toJSONObject() const;
        /** Builds the object and writes it as text. */
        QString toJSON() const;

        bool operator==(const Dns& other) const;

        /** The servers' addresses. */
        QStringList nameservers;
        /** The search domains. */
        QStringList search;
    };

    using BridgeService = OVIK::BridgeService;

    /** Makes a document of version 0 that is empty. */
    NetworkConfiguration() = default;
    NetworkConfiguration(const NetworkConfiguration& other);
    ~NetworkConfiguration();
    NetworkConfiguration& operator=(const NetworkConfiguration& other);

    /** Reads a text; see above. */
    bool fromJSON(const QString& text);
    /**
     * Reads an object into this one, key by key. Returns false, after a warning, when the version is missing,
     * when this document has a version other than 0 already, when an interface has no name, or when two have
     * the same. The interfaces are replaced only when all could be read and stay as they are when the key is
     * absent.
     */
    bool fromJSONObject(const json::Object& object);
    /** Builds the object; all keys are always there. */
    json::Object toJSONObject() const;
    /** Builds the object and writes it as text. */
    QString toJSON() const;

    bool operator==(const NetworkConfiguration& other) const;

    int version = 0;
    Dns dns;
    QString hostname;
    BridgeService bridge;
    /** The interfaces by name, owned. A null record counts as absent. */
    QMap<QString, Interface*> interfaces;
};

} // namespace OVIK
