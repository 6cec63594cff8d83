#include "networkmanagerobject.h"

#include "OVIKAdaptor.h"

NetworkManagerObject::NetworkManagerObject(Device& oDevice, World& oWorld, QObject* pParent)
    : SimulatedObject(oWorld, pParent), m_oDevice(oDevice)
{
    new NetworkManagerAdaptor(this);
}

bool NetworkManagerObject::isKnown(const QString& strInterface)
{
    return !m_oDevice.m_oNetwork.interfaceJSON(strInterface).isEmpty() &&
           !world().strikes(World::eFault_UnknownInterface, strInterface);
}

/** Makes of the text what the present world wants. */
QString NetworkManagerObject::spoilt(const QString& strJSON)
{
    if (world().fault() == World::eFault_MalformedJSON) {
        return world().argument().isEmpty() ? strJSON.left(strJSON.size() / 2) : world().argument();
    }
    if (world().fault() == World::eFault_WrongTypes) {
        return QStringLiteral(
            R"({ "version" : "1", "name" : "eth0", "dhcp" : "no", "ip_address" : 3232235796, )"
            R"("interfaces" : [ { "name" : 0 } ] })");
    }
    return strJSON;
}

QString NetworkManagerObject::getConfigJSON()
{
    return answer([this] { return spoilt(m_oDevice.m_oNetwork.toJSON()); });
}

QString NetworkManagerObject::getInterfaceConfig(const QString& ifname)
{
    if (isKnown(ifname)) {
        return answer([=] { return spoilt(m_oDevice.m_oNetwork.interfaceJSON(ifname)); });
    }
    refuse(QStringLiteral("com.quen.OVIK.Error.UnknownInterface"),
           QStringLiteral("No such network interface: %1").arg(ifname));
    return {};
}

int NetworkManagerObject::setInterfaceConfigJSON(const QString& interface, const QString& config)
{
    return answer(
        [=] { return isKnown(interface) && m_oDevice.m_oNetwork.merge(interface, config) ? 0 : -1; });
}

int NetworkManagerObject::setConfigJSON(const QString& interface)
{
    return answer([=] { return m_oDevice.m_oNetwork.load(interface) ? 0 : -1; });
}

int NetworkManagerObject::applyNewConfiguration()
{
    return answer([this] {
        m_oDevice.m_oNetwork.apply();
        return 0;
    });
}
