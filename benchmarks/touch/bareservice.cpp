#include "bareservice.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkInterface>

namespace {

const QDBusConnection& bus()
{
    static const auto s_oBus = QDBusConnection::connectToBus(QDBusConnection::SystemBus, "bare");
    return s_oBus;
}

QVariant call(const char* szService, const char* szPath, const char* szInterface, const char* szMember,
              const QVariantList& oArguments = {})
{
    QDBusMessage oCall = QDBusMessage::createMethodCall(szService, szPath, szInterface, szMember);
    oCall.setArguments(oArguments);
    return bus().call(oCall).arguments().value(0);
}

QJsonObject interfaceSettings(const QString& strName)
{
    const QString strJson =
        callService("/NetworkManager", "com.quen.OVIK.NetworkManager", "getInterfaceConfig", {strName})
            .toString();
    return QJsonDocument::fromJson(strJson.toUtf8()).object();
}

} // namespace

QVariant callService(const char* szPath, const char* szInterface, const char* szMember,
                     const QVariantList& oArguments)
{
    return call("com.quen.OVIK", szPath, szInterface, szMember, oArguments);
}

void findService()
{
    for (int i = 0; i < 2; ++i) {
        call("org.freedesktop.DBus", "/", "org.freedesktop.DBus", "GetId");
    }
    callService("/", "", "q_autostart");
    callService("/", "org.freedesktop.DBus.Peer", "Ping");
    for (int i = 0; i < 5; ++i) {
        call("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "GetNameOwner",
             {"com.quen.OVIK"});
    }
}

QStringList interfaceNames()
{
    QStringList oNames;
    const QList<QNetworkInterface> oInterfaces = QNetworkInterface::allInterfaces();
    for (const QNetworkInterface& oInterface : oInterfaces) {
        if (!oInterface.flags().testFlag(QNetworkInterface::IsLoopBack)) {
            oNames.append(oInterface.name());
            interfaceSettings(oInterface.name());
        }
    }
    return oNames;
}

QStringList addressesOf(const QString& strName)
{
    const QJsonObject oSettings = interfaceSettings(strName);
    QStringList oTexts;
    for (const char* szKey : {"ip_address", "netmask", "gateway_ip"}) {
        const QString strKey = (oSettings["dhcp"].toBool() ? "actual_" : "") + QString(szKey);
        oTexts.append(oSettings[strKey].toString());
    }
    return oTexts;
}
