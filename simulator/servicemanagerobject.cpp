#include "servicemanagerobject.h"

#include "OVIKAdaptor.h"

ServiceManagerObject::ServiceManagerObject(Device& oDevice, World& oWorld, QObject* pParent)
    : SimulatedObject(oWorld, pParent), m_oDevice(oDevice)
{
    new ServiceManagerAdaptor(this);
}

int ServiceManagerObject::change(const QString& strService,
                                 const std::function<void(Device::sService&)>& fnChange)
{
    return answer([=] {
        const auto it = m_oDevice.m_oServices.find(strService);
        if (it == m_oDevice.m_oServices.end()) {
            return -1;
        }
        fnChange(*it);
        return 0;
    });
}

int ServiceManagerObject::start(const QString& service)
{
    return change(service, [](Device::sService& oService) { oService.m_bRunning = true; });
}

int ServiceManagerObject::stop(const QString& service)
{
    return change(service, [](Device::sService& oService) { oService.m_bRunning = false; });
}

int ServiceManagerObject::restart(const QString& service)
{
    return start(service);
}

int ServiceManagerObject::reload(const QString& service)
{
    return change(service, [](Device::sService& /*oService*/) {});
}

int ServiceManagerObject::enable(const QString& service)
{
    return change(service, [](Device::sService& oService) { oService.m_bEnabled = true; });
}

int ServiceManagerObject::disable(const QString& service)
{
    return change(service, [](Device::sService& oService) { oService.m_bEnabled = false; });
}

bool ServiceManagerObject::enabled(const QString& service)
{
    return answer([=] { return m_oDevice.m_oServices.value(service).m_bEnabled; });
}

int ServiceManagerObject::state(const QString& service)
{
    return answer([=] {
        if (!m_oDevice.m_oServices.contains(service)) {
            return -1;
        }
        return m_oDevice.m_oServices.value(service).m_bRunning ? 1 : 0;
    });
}
