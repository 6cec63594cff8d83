#include "network/oviknetworkmanager.h"
#include "platform/ovikplatform.h"

#include <QCoreApplication>
#include <QMap>
#include <QThread>
#include <QVariant>

#include <functional>
#include <iostream>

namespace {

QByteArray g_oArgument; // the text behind the name of the action

OVIKPlatform& platform()
{
    return *OVIKPlatform::getInstance();
}

quint32 number()
{
    return g_oArgument.toUInt(nullptr, 16);
}

QString hexadecimal(quint32 nNumber)
{
    return QString::number(nNumber, 16);
}

QVariant macAddress()
{
    QByteArray oBytes(6, '\0');
    platform().GetMacAddress(reinterpret_cast<unsigned char*>(oBytes.data()));
    return oBytes.toHex(':');
}

// Tells that settings are about to be written, waits to be told to go on, and lets the client see what
// happened.
void hold()
{
    std::cout << "= held" << std::endl;
    std::string strLine;
    std::getline(std::cin, strLine);
    QThread::msleep(300);
}

const QMap<QByteArray, std::function<QVariant()>> g_oActions = {
    {"GetBestInterfaceIP", [] { return platform().GetBestInterfaceIP().toString(); }},
    {"GetDHCP", [] { return platform().GetDHCP(); }},
    {"GetGateWay", [] { return hexadecimal(platform().GetGateWay()); }},
    {"GetIpAddress", [] { return hexadecimal(platform().GetIpAddress()); }},
    {"GetIpAddressAsString", [] { return platform().GetIpAddressAsString(); }},
    {"GetMacAddress", macAddress},
    {"GetNetmask", [] { return hexadecimal(platform().GetNetmask()); }},
    {"GetVersion", [] { return hexadecimal(platform().GetVersion()); }},
    {"Init", [] { return platform().Init(); }},
    {"Reboot", [] { return platform().Reboot(), QVariant(); }},
    {"SetDHCP", [] { return platform().SetDHCP(g_oArgument == "true"); }},
    {"SetGateWay", [] { return platform().SetGateWay(number()); }},
    {"SetInterfaceName",
     [] { return platform().SetInterfaceName(g_oArgument == "null" ? nullptr : g_oArgument.constData()); }},
    {"SetIpAddress", [] { return platform().SetIpAddress(number()); }},
    {"SetNetmask", [] { return platform().SetNetmask(number()); }},
    {"SetNetworkSettings", [] { return platform().SetNetworkSettings(); }},
    {"UpdateNetworkSettings", [] { return platform().UpdateNetworkSettings(); }},
    {"isNTPDEnabled", [] { return platform().isNTPDEnabled(); }},
    {"restartNTPDService", [] { return platform().restartNTPDService(g_oArgument == "true"), QVariant(); }},
};

} // namespace

// The linker puts this in the place of Interface::toJSON(), which the client calls between its reading and
// its writing.
using Interface = OVIK::NetworkConfiguration::Interface;
QString
realToJSON(const Interface* pInterface) __asm__("__real__ZNK4OVIK20NetworkConfiguration9Interface6toJSONEv");
QString
wrapToJSON(const Interface* pInterface) __asm__("__wrap__ZNK4OVIK20NetworkConfiguration9Interface6toJSONEv");

QString wrapToJSON(const Interface* pInterface)
{
    if (pInterface->label == QLatin1String("hold")) {
        hold();
    }
    return realToJSON(pInterface);
}

// Does the actions that it reads, one a line, and writes each result as a line that begins with "= ".
int main(int argc, char* argv[])
{
    QCoreApplication oApplication(argc, argv);
    for (std::string strLine; std::getline(std::cin, strLine);) {
        const QByteArray oLine = QByteArray::fromStdString(strLine);
        const int nName = oLine.indexOf(' ') < 0 ? oLine.size() : oLine.indexOf(' ');
        g_oArgument = oLine.mid(nName + 1);
        const QString strResult = g_oActions.value(oLine.left(nName))().toString();
        std::cout << "= " << strResult.toStdString() << std::endl;
    }
    return 0;
}
