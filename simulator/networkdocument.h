#pragma once

#include "network/oviknetworkmanager.h"

#include <QObject>
#include <QSet>
#include <QString>

#include <memory>

/**
 * The network configuration of the simulated device: what is configured, and what is in force.
 *
 * A changed interface gets into force with apply(): a static one at once, one with DHCP some time later, when
 * its lease arrives. Its lease is the address that was in force when the document was loaded, or one of
 * 192.168.200.0/24.
 */
class NetworkDocument : public QObject
{
    Q_OBJECT

public:
    /** Makes an empty document whose leases take nLeaseDelayMs milliseconds. */
    NetworkDocument(int nLeaseDelayMs, QObject* pParent);

    /** Returns a document for the interfaces of this machine, without loopback and CAN, with their addresses.
     */
    static QString ofThisMachine();

    /** Takes over a whole document; returns false and changes nothing when the text is none. */
    bool load(const QString& strJSON);

    /** Returns the whole document. */
    QString toJSON() const;

    /** Returns the interface of that name; empty when there is none. */
    QString interfaceJSON(const QString& strName) const;

    /**
     * Merges a description of one interface into that interface; what is in force stays.
     *
     * Returns false and changes nothing when there is no interface of that name, or the text does not
     * describe it.
     */
    bool merge(const QString& strName, const QString& strJSON);

    /** Puts into force what was merged since the last time. */
    void apply();

private:
    using Interface = OVIK::NetworkConfiguration::Interface;

    struct sLease
    {
        QString m_strAddress;
        QString m_strNetmask;
        QString m_strGateway;
    };

    void rememberLeases();
    void put(const QString& strName, const sLease& oAddresses);
    void requestLease(const QString& strName);

    int m_nLeaseDelayMs;
    int m_nRequest = 0;
    std::unique_ptr<OVIK::NetworkConfiguration> m_pConfiguration;
    QSet<QString> m_oChanged;
    QMap<QString, sLease> m_oLeases;
    QMap<QString, int> m_oRequests;
};
