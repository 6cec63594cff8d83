#include "documents.h"

#include "platform/oviknetworkmanager.h"

namespace {

using Configuration = OVIK::NetworkConfiguration;

Configuration::Interface* makeInterface(int n)
{
    const QString strNet = QStringLiteral("10.%1.%2.").arg(n / 256).arg(n % 256);
    auto* pInterface = new Configuration::Interface;
    pInterface->name = QStringLiteral("eth%1").arg(n);
    pInterface->label = QStringLiteral("Machine hall %1").arg(n);
    pInterface->mac_address = QStringLiteral("00:30:de:00:%1:7f").arg(n % 256, 2, 16, QLatin1Char('0'));
    pInterface->ip_address = pInterface->actual_ip_address = strNet + "20";
    pInterface->netmask = pInterface->actual_netmask = QStringLiteral("255.255.255.0");
    pInterface->gateway_ip = pInterface->actual_gateway_ip = strNet + "1";
    pInterface->metric = pInterface->actual_metric = 100 + n;
    pInterface->configured = n % 2 == 0;
    return pInterface;
}

} // namespace

std::string configurationText(int nInterfaces)
{
    Configuration oConfiguration;
    oConfiguration.version = 1;
    oConfiguration.hostname = QStringLiteral("panel-01");
    oConfiguration.dns.nameservers = QStringList{"192.168.1.1", "192.168.1.2"};
    oConfiguration.dns.search = QStringList{"plant.local"};
    oConfiguration.bridge.interfaces = QStringList{"br0"};
    for (int n = 0; n < nInterfaces; ++n) {
        Configuration::Interface* pInterface = makeInterface(n);
        oConfiguration.interfaces.insert(pInterface->name, pInterface);
    }
    return oConfiguration.toJSON().toStdString();
}
