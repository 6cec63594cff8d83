#include "platform/ovikrecords.h"

#include <QByteArray>
#include <QDBusMetaType>

#include <algorithm>
#include <cstddef>

namespace {

template<std::size_t N>
QByteArray bytesOf(const quint8 (&aField)[N])
{
    return {reinterpret_cast<const char*>(aField), static_cast<int>(N)};
}

template<std::size_t N>
void readBytes(const QDBusArgument& oArgument, quint8 (&aField)[N])
{
    QByteArray oBytes;
    oArgument >> oBytes;
    const auto nReceived = std::min(N, static_cast<std::size_t>(oBytes.size()));
    std::fill(std::copy_n(oBytes.cbegin(), nReceived, aField), aField + N, quint8(0));
}

} // namespace

QDBusArgument& operator<<(QDBusArgument& oArgument, const _systemInfo& oInfo)
{
    oArgument.beginStructure();
    oArgument << oInfo.day << oInfo.month << oInfo.year;
    oArgument << bytesOf(oInfo.serialNo) << bytesOf(oInfo.moduleName);
    oArgument << oInfo.hwCode << oInfo.hwSubCode << bytesOf(oInfo.manufactureCode) << oInfo.hwDispID;
    oArgument.endStructure();
    return oArgument;
}

const QDBusArgument& operator>>(const QDBusArgument& oArgument, _systemInfo& oInfo)
{
    oArgument.beginStructure();
    oArgument >> oInfo.day >> oInfo.month >> oInfo.year;
    readBytes(oArgument, oInfo.serialNo);
    readBytes(oArgument, oInfo.moduleName);
    oArgument >> oInfo.hwCode >> oInfo.hwSubCode;
    readBytes(oArgument, oInfo.manufactureCode);
    oArgument >> oInfo.hwDispID;
    oArgument.endStructure();
    return oArgument;
}

QDBusArgument& operator<<(QDBusArgument& oArgument, const _bootldrInfo& oInfo)
{
    oArgument.beginStructure();
    oArgument << oInfo.type << oInfo.day << oInfo.month << oInfo.year << bytesOf(oInfo.version);
    oArgument.endStructure();
    return oArgument;
}

const QDBusArgument& operator>>(const QDBusArgument& oArgument, _bootldrInfo& oInfo)
{
    oArgument.beginStructure();
    oArgument >> oInfo.type >> oInfo.day >> oInfo.month >> oInfo.year;
    readBytes(oArgument, oInfo.version);
    oArgument.endStructure();
    return oArgument;
}

void registerOVIKRecords()
{
    qDBusRegisterMetaType<_bootldrInfo>();
    qDBusRegisterMetaType<_systemInfo>();
}
