#include "network/oviknetworkmanager.h"
#include "platform/ovikplatform.h"

#include <QCoreApplication>
#include <QMap>
#include <QThread>
#include <QVariant>

#include <functional>
#include <iostream>

namespace {

// The text behind the name of an action, as what its operation takes.
struct sArgument
{
    QByteArray m_oText;

    operator bool() const { return m_oText == "true"; }
    operator quint32() const { return m_oText.toUInt(nullptr, 16); }
    operator const char*() const { return m_oText == "null" ? nullptr : m_oText.constData(); }
};

using fnAction = std::function<QVariant(const sArgument&)>;

QString textOf(const QVariant& oResult)
{
    return oResult.userType() == QMetaType::UInt ? QString::number(oResult.toUInt(), 16) : oResult.toString();
}

// Makes an action of an operation with at most one argument.
template<typename Operation>
fnAction action(Operation fnOperation)
{
    return [=](const sArgument& oArgument) -> QVariant {
        OVIKPlatform* pPlatform = OVIKPlatform::getInstance();
        if constexpr (std::is_invocable_v<Operation, OVIKPlatform*>) {
            return std::invoke(fnOperation, pPlatform);
        } else {
            return std::invoke(fnOperation, pPlatform, oArgument);
        }
    };
}

QVariant macAddress(const sArgument& /*oArgument*/)
{
    QByteArray oBytes(6, '\0');
    OVIKPlatform::getInstance()->GetMacAddress(reinterpret_cast<unsigned char*>(oBytes.data()));
    return oBytes.toHex(':');
}

QVariant bestAddress(const sArgument& /*oArgument*/)
{
    return OVIKPlatform::getInstance()->GetBestInterfaceIP().toString();
}

QVariant restartNTPD(const sArgument& oArgument)
{
    OVIKPlatform::getInstance()->restartNTPDService(oArgument);
    return {};
}

QVariant reboot(const sArgument& /*oArgument*/)
{
    OVIKPlatform::getInstance()->Reboot();
    return {};
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

const QMap<QByteArray, fnAction> g_oActions = {
    {"GetBestInterfaceIP", bestAddress},
    {"GetDHCP", action(&OVIKPlatform::GetDHCP)},
    {"GetGateWay", action(&OVIKPlatform::GetGateWay)},
    {"GetIpAddress", action(&OVIKPlatform::GetIpAddress)},
    {"GetIpAddressAsString", action(&OVIKPlatform::GetIpAddressAsString)},
    {"GetMacAddress", macAddress},
    {"GetNetmask", action(&OVIKPlatform::GetNetmask)},
    {"GetVersion", action(&OVIKPlatform::GetVersion)},
    {"Init", action(&OVIKPlatform::Init)},
    {"Reboot", reboot},
    {"SetDHCP", action(&OVIKPlatform::SetDHCP)},
    {"SetGateWay", action(&OVIKPlatform::SetGateWay)},
    {"SetInterfaceName", action(&OVIKPlatform::SetInterfaceName)},
    {"SetIpAddress", action(&OVIKPlatform::SetIpAddress)},
    {"SetNetmask", action(&OVIKPlatform::SetNetmask)},
    {"SetNetworkSettings", action(&OVIKPlatform::SetNetworkSettings)},
    {"UpdateNetworkSettings", action(&OVIKPlatform::UpdateNetworkSettings)},
    {"isNTPDEnabled", action(&OVIKPlatform::isNTPDEnabled)},
    {"restartNTPDService", restartNTPD},
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
        const QVariant oResult = g_oActions.value(oLine.left(nName))({oLine.mid(nName + 1)});
        std::cout << "= " << textOf(oResult).toStdString() << std::endl;
    }
    return 0;
}
