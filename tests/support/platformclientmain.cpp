#include "network/oviknetworkmanager.h"
#include "platform/ovikplatform.h"

#include <QCoreApplication>
#include <QMap>
#include <QThread>

#include <functional>
#include <iostream>

namespace {

using fnAction = std::function<QString(const QByteArray&)>;

bool g_bHold = false;

QString textOf(bool bResult)
{
    return bResult ? QStringLiteral("true") : QStringLiteral("false");
}

QString textOf(quint32 nResult)
{
    return QString::number(nResult, 16);
}

QString textOf(const QString& strResult)
{
    return strResult;
}

QString textOf(const QHostAddress& oResult)
{
    return oResult.toString();
}

void read(const QByteArray& oText, bool& bArgument)
{
    bArgument = oText == "true";
}

void read(const QByteArray& oText, quint32& nArgument)
{
    nArgument = oText.toUInt(nullptr, 16);
}

void read(const QByteArray& oText, const char*& pArgument)
{
    pArgument = oText == "null" ? nullptr : oText.constData();
}

/** Makes an action of an operation with at most one argument. */
template<typename Result, typename... Argument>
fnAction action(Result (OVIKPlatform::*fnOperation)(Argument...))
{
    return [=](const QByteArray& oText) {
        std::tuple<Argument...> oArguments;
        std::apply([&](auto&... oArgument) { (read(oText, oArgument), ...); }, oArguments);
        const auto call = [=](auto... oArgument) {
            return (OVIKPlatform::getInstance()->*fnOperation)(oArgument...);
        };
        if constexpr (std::is_void_v<Result>) {
            std::apply(call, oArguments);
            return QString();
        } else {
            return QString(textOf(std::apply(call, oArguments)));
        }
    };
}

template<typename Result>
fnAction action(Result (OVIKPlatform::*fnOperation)() const)
{
    return [=](const QByteArray&) { return QString(textOf((OVIKPlatform::getInstance()->*fnOperation)())); };
}

QString macAddress(const QByteArray& /*oText*/)
{
    QByteArray oBytes(6, '\0');
    OVIKPlatform::getInstance()->GetMacAddress(reinterpret_cast<unsigned char*>(oBytes.data()));
    return QString::fromLatin1(oBytes.toHex(':'));
}

QString deviceName(const QByteArray& oText)
{
    OVIKPlatform::getInstance()->SetDeviceNameAsString(oText);
    return OVIKPlatform::getInstance()->GetDeviceNameAsString();
}

QString holdBeforeWriting(const QByteArray& /*oText*/)
{
    g_bHold = true;
    return {};
}

/** Tells that settings are about to be written, waits to be told to go on, and lets the client see what
 * happened. */
void hold()
{
    std::cout << "= held" << std::endl;
    std::string strLine;
    std::getline(std::cin, strLine);
    QThread::msleep(300);
}

const QMap<QByteArray, fnAction> g_oActions = {
    {"DeviceName", deviceName},
    {"GetBestInterfaceIP", action(&OVIKPlatform::GetBestInterfaceIP)},
    {"GetDHCP", action(&OVIKPlatform::GetDHCP)},
    {"GetGateWay", action(&OVIKPlatform::GetGateWay)},
    {"GetIpAddress", action(&OVIKPlatform::GetIpAddress)},
    {"GetIpAddressAsString", action(&OVIKPlatform::GetIpAddressAsString)},
    {"GetMacAddress", macAddress},
    {"GetNetmask", action(&OVIKPlatform::GetNetmask)},
    {"GetVersion", action(&OVIKPlatform::GetVersion)},
    {"HoldBeforeWriting", holdBeforeWriting},
    {"Init", action(&OVIKPlatform::Init)},
    {"Reboot", action(&OVIKPlatform::Reboot)},
    {"SetDHCP", action(&OVIKPlatform::SetDHCP)},
    {"SetGateWay", action(&OVIKPlatform::SetGateWay)},
    {"SetInterfaceName", action(&OVIKPlatform::SetInterfaceName)},
    {"SetIpAddress", action(&OVIKPlatform::SetIpAddress)},
    {"SetNetmask", action(&OVIKPlatform::SetNetmask)},
    {"SetNetworkSettings", action(&OVIKPlatform::SetNetworkSettings)},
    {"UpdateNetworkSettings", action(&OVIKPlatform::UpdateNetworkSettings)},
    {"isNTPDEnabled", action(&OVIKPlatform::isNTPDEnabled)},
    {"restartNTPDService", action(&OVIKPlatform::restartNTPDService)},
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
    if (g_bHold) {
        hold();
    }
    return realToJSON(pInterface);
}

/** Does the actions that it reads, one a line, and writes each result as a line that begins with "= ". */
int main(int argc, char* argv[])
{
    QCoreApplication oApplication(argc, argv);
    for (std::string strLine; std::getline(std::cin, strLine);) {
        const QByteArray oLine = QByteArray::fromStdString(strLine);
        const int nName = oLine.indexOf(' ') < 0 ? oLine.size() : oLine.indexOf(' ');
        const QString strResult = g_oActions.value(oLine.left(nName))(oLine.mid(nName + 1));
        std::cout << "= " << strResult.toStdString() << std::endl;
    }
    return 0;
}
