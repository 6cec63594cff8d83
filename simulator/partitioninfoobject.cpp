#include "partitioninfoobject.h"

#include "OVIKAdaptor.h"
#include "recordbytes.h"

PartitionInfoObject::PartitionInfoObject(Device& oDevice, World& oWorld, QObject* pParent)
    : SimulatedObject(oWorld, pParent), m_oDevice(oDevice)
{
    new PartitionInfoAdaptor(this);
}

uchar PartitionInfoObject::day()
{
    return answer([this] { return m_oDevice.m_oMainOS.day; });
}

partitionInfo PartitionInfoObject::info()
{
    if (world().fault() == World::eFault_ShortRecords) {
        const partitionInfo& o = m_oDevice.m_oMainOS;
        QDBusArgument oRecord;
        oRecord.beginStructure();
        oRecord << o.type << o.day << o.month << o.year << recordBytes(o.version, world().number());
        oRecord.endStructure();
        answerWith(QVariant::fromValue(oRecord));
        return {};
    }
    return answer([this] { return m_oDevice.m_oMainOS; });
}

uchar PartitionInfoObject::month()
{
    return answer([this] { return m_oDevice.m_oMainOS.month; });
}

QByteArray PartitionInfoObject::version()
{
    return answer([this] { return recordBytes(m_oDevice.m_oMainOS.version); });
}

uchar PartitionInfoObject::year()
{
    return answer([this] { return m_oDevice.m_oMainOS.year; });
}
