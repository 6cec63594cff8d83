#pragma once

#include "platform/oviknetworkmanager.h"
#include "platform/pendingreplies.h"

#include <QDBusConnection>
#include <QHostAddress>
#include <QObject>
#include <QString>

class ComQuenOVIKInterface;
class ComQuenOVIKNetworkManagerInterface;
class ComQuenOVIKPartitionInfoInterface;
class ComQuenOVIKServiceManagerInterface;
class ComQuenOVIKSystemInfoInterface;

/**
 * The process-wide client of the platform service "com.quen.OVIK".
 *
 * It looks for the service on the system bus, then on the session bus, when an operation first needs it, and
 * keeps a cache of the settings of one network interface, the selected one. Used on the GUI thread only; an
 * operation that waits for the service blocks the thread. No operation throws.
 *
 * IPv4 addresses are numbers in host byte order, the first dotted number in the top byte, as
 * QHostAddress::toIPv4Address() gives them; 0 stands for none.
 */
class OVIKPlatform : public QObject
{
    Q_OBJECT

public:
    /** Returns the one instance; creates it on the first call, without any D-Bus traffic. It lives until the
     * process ends. */
    static OVIKPlatform* getInstance();

    // Keeps the connection and the four object proxies: they last as long as the process.
    ~OVIKPlatform() override;

    /**
     * Connects to the bus that has the service and creates the proxies; blocks up to 5 s for each call that
     * it makes.
     *
     * Every operation that needs a connection calls it while there is none. Returns false, without a
     * connection, if no bus can be reached, or if a session bus can be reached but no bus has the service;
     * the next operation tries again. Even if it returns true, a proxy may be invalid: its calls then fail
     * one by one. Logs steps and failures as warnings.
     */
    bool Init();

    /**
     * Selects the interface that the operations below read and write.
     *
     * szName is UTF-8 text; null or empty selects "eth0". The cache keeps the settings of the former
     * interface. Always returns true.
     */
    bool SetInterfaceName(const char* szName);

    /** Copies the cached MAC address, the first byte first, to the six bytes at pAddress. Always returns
     * true. */
    bool GetMacAddress(unsigned char* pAddress) const;

    /** Returns the cached IPv4 address. */
    quint32 GetIpAddress() const;

    /** Returns the cached IPv4 address in dotted form, "0.0.0.0" for none. */
    QString GetIpAddressAsString() const;

    /** Caches an IPv4 address and clears the cached DHCP flag. Always returns true. */
    bool SetIpAddress(quint32 nAddress);

    /** Returns the cached netmask. */
    quint32 GetNetmask() const;

    /** Caches a netmask and clears the cached DHCP flag. Always returns true. */
    bool SetNetmask(quint32 nNetmask);

    /** Returns the cached gateway. */
    quint32 GetGateWay() const;

    /** Caches a gateway and clears the cached DHCP flag. Always returns true. */
    bool SetGateWay(quint32 nGateWay);

    /** Returns the cached DHCP flag. */
    bool GetDHCP() const;

    /** Caches the DHCP flag; to be called after the setters of the addresses, which clear it. Always returns
     * true. */
    bool SetDHCP(bool bDHCP);

    /**
     * Reads the settings of the selected interface from the service into the cache.
     *
     * With DHCP on the cache gets the addresses in force, with DHCP off the configured ones. Fields that are
     * missing in the reply get their defaults, no address and DHCP off; so do all if the reply is not a JSON
     * object. Returns false without a connection. Returns true, and leaves the cache unchanged, if the
     * service replies with an error or with a JSON value of the wrong type; HasReadNetworkSettings() then
     * returns false.
     */
    bool UpdateNetworkSettings();

    /** Returns whether the last UpdateNetworkSettings() has read the settings of the interface selected then.
     * Otherwise the cache may hold those of another one. */
    bool HasReadNetworkSettings() const;

    /**
     * Writes the cached addresses and DHCP flag of the selected interface to the service and has it apply
     * them.
     *
     * With DHCP on the addresses stay as the service has them. Does not wait for the replies: true means that
     * the settings were sent; watchReplies() reports whether the service took them. Returns false, and sends
     * nothing, without a connection or if the current settings of the interface cannot be read: an error
     * reply, or a text that does not describe an interface. A description needs a name: without one it may
     * come from a truncated text, and defaults must never overwrite a device's settings.
     */
    bool SetNetworkSettings();

    /**
     * Watches the replies to what the last SetNetworkSettings() or restartNTPDService() has sent.
     *
     * Returns an object that reports once and then deletes itself. To be called right after the operation.
     */
    PendingReplies* watchReplies();

    /**
     * Returns the address that identifies the device best, read from the service.
     *
     * It is the address in force of the first interface, in the order of names, that is not hidden and has
     * one. Returns a null address if there is none or reading fails.
     */
    QHostAddress GetBestInterfaceIP();

    /**
     * Returns the version of the main OS partition: from the top byte its three numbers, then a zero byte.
     *
     * Read from the service once; 0 until that has succeeded.
     */
    quint32 GetVersion();

    /**
     * Makes the service stop and disable the NTP daemon and then, if bEnable is set, enable and start it.
     *
     * Does not wait for the service; watchReplies() reports whether it took the calls. Does nothing before
     * a successful Init().
     */
    void restartNTPDService(bool bEnable);

    /** Asks the service whether the NTP daemon is enabled; returns false also on an error and before a
     * successful Init(). */
    bool isNTPDEnabled();

    /** Makes the service restart the device; does not wait. Sends nothing if the service's root object was
     * missing during Init(). */
    void Reboot();

    /** Keeps the device name that the runtime sent; nothing is sent to the service. */
    void SetDeviceNameAsString(QString strName);

    /** Returns the device name kept last, empty until the runtime has sent one. */
    QString GetDeviceNameAsString() const;

private:
    OVIKPlatform();
    Q_DISABLE_COPY(OVIKPlatform)

    void waitForRootObject(const QDBusConnection& oConnection);
    void createObjectProxies();
    bool isConnectedOrInit();
    void cacheSettings(const OVIK::NetworkConfiguration::Interface& oInterface);

    static bool m_bInstanceFlag;
    static OVIKPlatform* m_pInstance;

    QDBusConnection* m_ovikConnection = nullptr;
    ComQuenOVIKInterface* m_ovik = nullptr;
    ComQuenOVIKSystemInfoInterface* m_systemInfo = nullptr;
    ComQuenOVIKPartitionInfoInterface* m_mainosInfo = nullptr;
    ComQuenOVIKNetworkManagerInterface* m_networkManager = nullptr;
    ComQuenOVIKServiceManagerInterface* m_serviceManager = nullptr;
    quint32 version = 0;
    QString deviceName; // Kept, see docs/compatibility.md
    quint8 macAddress[6] = {};
    quint32 ipAddress = 0;
    quint32 netMask = 0;
    quint32 gateWay = 0;
    QString ifName = QStringLiteral("eth0");
    bool dhcp = false;
    QString m_deviceName;
    bool m_bHasReadSettings = false;
    QList<sSentCall> m_oSentCalls; // of the last operation that did not wait
};
