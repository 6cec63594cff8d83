#pragma once

#include <QJsonObject>
#include <QMap>
#include <QObject>
#include <QSet>
#include <QString>

/**
 * The network configuration of the simulated device: what is configured, and what is in force.
 *
 * apply() puts a changed interface into force: a static one at once, one with DHCP when its lease arrives.
 * The lease is the address that was in force when the document was loaded, or one of 192.168.200.0/24.
 */
class NetworkDocument : public QObject
{
    Q_OBJECT

public:
    /** Creates a document for the interfaces of this machine except loopback and CAN, with addresses of
     * 192.168.0.0/16; leases take nLeaseDelayMs milliseconds. */
    explicit NetworkDocument(int nLeaseDelayMs);

    /** Takes over a whole document; returns false and changes nothing if the text is not one. */
    bool load(const QString& strJSON);

    /** Returns the whole document as text. */
    QString toJSON() const;

    /** Returns the interface of that name as text; empty if there is none. */
    QString interfaceJSON(const QString& strName) const;

    /**
     * Merges a description of one interface into that interface; what is in force stays.
     *
     * Returns false and changes nothing if there is no interface of that name, or the text does not
     * describe it.
     */
    bool merge(const QString& strName, const QString& strJSON);

    /** Puts into force what was merged since the last time. */
    void apply();

private:
    void put(const QString& strName, const QJsonObject& oAddresses);
    void requestLease(const QString& strName);

    int m_nLeaseDelayMs;
    int m_nRequest = 0;
    QJsonObject m_oDocument;
    QMap<QString, QJsonObject> m_oInterfaces;
    QMap<QString, QJsonObject> m_oLeases;
    QSet<QString> m_oChanged;
    QMap<QString, int> m_oRequests;
};
