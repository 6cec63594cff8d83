#include "systeminfoobject.h"

#include "OVIKAdaptor.h"
#include "recordbytes.h"

SystemInfoObject::SystemInfoObject(Device& oDevice, World& oWorld, QObject* pParent)
    : SimulatedObject(oWorld, pParent), m_oDevice(oDevice)
{
    new SystemInfoAdaptor(this);
}

uchar SystemInfoObject::day()
{
    return answer([this] { return m_oDevice.m_oSystem.day; });
}

uchar SystemInfoObject::hwCode()
{
    return answer([this] { return m_oDevice.m_oSystem.hwCode; });
}

uchar SystemInfoObject::hwDispID()
{
    return answer([this] { return m_oDevice.m_oSystem.hwDispID; });
}

uchar SystemInfoObject::hwSubCode()
{
    return answer([this] { return m_oDevice.m_oSystem.hwSubCode; });
}

systemInfo SystemInfoObject::info()
{
    if (world().fault() == World::eFault_ShortRecords) {
        const systemInfo& o = m_oDevice.m_oSystem;
        const int nLength = world().number();
        QDBusArgument oRecord;
        oRecord.beginStructure();
        oRecord << o.day << o.month << o.year << recordBytes(o.serialNo, nLength)
                << recordBytes(o.moduleName, nLength) << o.hwCode << o.hwSubCode
                << recordBytes(o.manufactureCode, nLength) << o.hwDispID;
        oRecord.endStructure();
        answerWith(QVariant::fromValue(oRecord));
        return {};
    }
    return answer([this] { return m_oDevice.m_oSystem; });
}

QByteArray SystemInfoObject::manufactureCode()
{
    return answer([this] { return recordBytes(m_oDevice.m_oSystem.manufactureCode); });
}

QByteArray SystemInfoObject::moduleName()
{
    return answer([this] { return recordBytes(m_oDevice.m_oSystem.moduleName); });
}

uchar SystemInfoObject::month()
{
    return answer([this] { return m_oDevice.m_oSystem.month; });
}

QByteArray SystemInfoObject::serialNo()
{
    return answer([this] { return recordBytes(m_oDevice.m_oSystem.serialNo); });
}

uchar SystemInfoObject::year()
{
    return answer([this] { return m_oDevice.m_oSystem.year; });
}
