#pragma once

#include "network/oviknetworkmanager.h"

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
    /** Returns the one instance; creates it on the first call, without any traffic. It lives until the
     * process ends. */
    static OVIKPlatform* getInstance();

    /** Lets getInstance() create a new instance. The connection and the four object proxies stay: they last
     * as long as the process. */
    ~OVIKPlatform() override;

    /**
     * Connects to the bus that has the service and creates the proxies; blocks up to 5 s for each call that
     * it makes.
     *
     * Every operation that needs a connection calls it while there is none. Returns false, without a
     * connection, when no bus can be reached or a session bus can be reached but no bus has the service; the
     * next operation tries again. With true a proxy may still be invalid: calls through it then fail one by
     * one. Steps and failures are logged as warnings.
     */
    bool Init();

    /**
     * Selects the interface that the operations below read and write.
     *
     * szName is UTF-8 text; null or empty selects "eth0". The cached settings stay those of the interface
     * before. Always true.
     */
    bool SetInterfaceName(const char* szName);

    /** Copies the cached MAC address, the first byte first, to the six bytes at pAddress. Always true. */
    bool GetMacAddress(unsigned char* pAddress) const;

    /** Returns the cached IPv4 address. */
    quint32 GetIpAddress() const;

    /** Returns the cached IPv4 address in dotted form, "0.0.0.0" for none. */
    QString GetIpAddressAsString() const;

    /** Caches an IPv4 address and clears the cached DHCP flag. Always true. */
    bool SetIpAddress(quint32 nAddress);

    /** Returns the cached netmask. */
    quint32 GetNetmask() const;

    /** Caches a netmask and clears the cached DHCP flag. Always true. */
    bool SetNetmask(quint32 nNetmask);

    /** Returns the cached gateway. */
    quint32 GetGateWay() const;

    /** Caches a gateway and clears the cached DHCP flag. Always true. */
    bool SetGateWay(quint32 nGateWay);

    /** Returns the cached DHCP flag. */
    bool GetDHCP() const;

    /** Caches the DHCP flag; to be called after the setters of the addresses, which clear it. Always true. */
    bool SetDHCP(bool bDHCP);

    /**
     * Reads the settings of the selected interface from the service into the cache.
     *
     * With DHCP on the cache gets the addresses in force, with DHCP off the configured ones. A text that is
     * no JSON object, or lacks a field, gives the field its default: no address, DHCP off. Returns false
     * without a connection. Returns true with the cache unchanged, which is that of the interface read
     * before, when the service replies with an error, or with JSON that has a value of another type than its
     * key asks for.
     */
    bool UpdateNetworkSettings();

    /**
     * Writes the cached addresses and DHCP flag of the selected interface to the service and has it apply
     * them.
     *
     * With DHCP on the addresses stay as the service has them. The service's answers to the writing are not
     * awaited: true means that the settings were sent. Returns false, and sends nothing, without a connection
     * or when the service does not tell the interface's present settings: an error reply, or a text that is
     * no description of an interface. A description without a name counts as none, as it may stem from a text
     * that was cut off, and defaults must never overwrite a device's settings.
     */
    bool SetNetworkSettings();

    /**
     * Asks the service for the address that identifies the device best.
     *
     * It is the address in force of the first interface, in the order of names, that is not hidden and has
     * one. Returns a null address when there is none, or the service cannot be asked.
     */
    QHostAddress GetBestInterfaceIP();

    /**
     * Returns the version of the main OS partition: from the top byte its three numbers, then a zero byte.
     *
     * It is asked of the service once; until it could be read the result is 0.
     */
    quint32 GetVersion();

    /**
     * Has the service stop and disable the NTP daemon and then, when bEnable is set, enable and start it.
     *
     * Does not wait for the service, and does nothing before a successful Init().
     */
    void restartNTPDService(bool bEnable);

    /** Asks the service whether the NTP daemon is enabled; false also on an error and before a successful
     * Init(). */
    bool isNTPDEnabled();

    /** Has the service restart the device; does not wait. Nothing is sent when the service's root object is
     * missing. */
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
    QString deviceName;
    quint8 macAddress[6] = {};
    quint32 ipAddress = 0;
    quint32 netMask = 0;
    quint32 gateWay = 0;
    QString ifName = QStringLiteral("eth0");
    bool dhcp = false;
    QString m_deviceName;
};
