#pragma once

#include <QDBusArgument>
#include <QMetaType>
#include <QtGlobal>

// The names are those of the platform service's own declarations.

/**
 * Identification of the device, filled by the platform service.
 *
 * On the bus it is one structure, (yyyayayyyayy), with the fields in the order of their declaration.
 */
struct _systemInfo
{
    quint8 day = 0;
    quint8 month = 0;
    quint8 year = 0;
    quint8 serialNo[3] = {};
    quint8 moduleName[5] = {};
    quint8 hwCode = 0;
    quint8 hwSubCode = 0;
    quint8 manufactureCode[2] = {};
    quint8 hwDispID = 0;
};
using systemInfo = _systemInfo;

/**
 * Boot loader and main OS partition, filled by the platform service.
 *
 * On the bus it is one structure, (yyyyay), with the fields in the order of their declaration.
 */
struct _bootldrInfo
{
    quint8 type = 0;
    quint8 day = 0;
    quint8 month = 0;
    quint8 year = 0;
    /** Version text, without a NUL at its end. The characters 11 to 16 are three numbers of two decimal
     * digits. */
    quint8 version[20] = {};
};
using partitionInfo = _bootldrInfo;

/** Time zone rules, offsets as the service counts them. Not sent over D-Bus: it has no operators. */
struct _timeZoneInfo
{
    quint8 stdMonth = 0;
    quint8 stdWeek = 0;
    quint8 stdDay = 0;
    quint8 stdHour = 0;
    quint8 stdMinute = 0;
    qint16 stdOffset = 0;
    quint8 dlsMonth = 0;
    quint8 dlsWeek = 0;
    quint8 dlsDay = 0;
    quint8 dlsHour = 0;
    quint8 dlsMinute = 0;
    qint16 dlsOffset = 0;
    quint8 mode = 0;
};
using timeZoneInfo = _timeZoneInfo;

/** Size of the splash image in pixels. Not sent over D-Bus: it has no operators. */
struct _splashImageInfo
{
    quint32 x = 0;
    quint32 y = 0;
};
using splashImageInfo = _splashImageInfo;

/** Signature of a plug-in module. Not sent over D-Bus: it has no operators. */
struct sSEEModule
{
    quint8 Name[16] = {};
    quint8 Hcode = 0;
    quint8 Hsubcode = 0;
    quint8 Xcode = 0;
    quint8 Xsubcode = 0;
    quint8 FunctArea[16] = {};
};

/** One storage device, spaces in bytes. Not sent over D-Bus: it has no operators. */
struct _ovikStorageInfo
{
    char mountPoint[200] = {};
    qint32 deviceType = 0;
    quint64 totalSpace = 0;
    quint64 freeSpace = 0;
    quint32 accessFlag = 0;
};
using ovikStorageInfo = _ovikStorageInfo;

Q_DECLARE_METATYPE(systemInfo)
Q_DECLARE_METATYPE(partitionInfo)
Q_DECLARE_METATYPE(timeZoneInfo)
Q_DECLARE_METATYPE(splashImageInfo)
Q_DECLARE_METATYPE(sSEEModule)
Q_DECLARE_METATYPE(ovikStorageInfo)

/** Writes the record as one structure, its arrays always in full length. */
QDBusArgument& operator<<(QDBusArgument& oArgument, const _systemInfo& oInfo);

/**
 * Reads the record from one structure.
 *
 * An array shorter than its field is filled with zeros, a longer one is cut.
 */
const QDBusArgument& operator>>(const QDBusArgument& oArgument, _systemInfo& oInfo);

/** Writes the record as one structure, its array always in full length. */
QDBusArgument& operator<<(QDBusArgument& oArgument, const _bootldrInfo& oInfo);

/** Reads the record from one structure; a short array is filled with zeros, a long one is cut. */
const QDBusArgument& operator>>(const QDBusArgument& oArgument, _bootldrInfo& oInfo);

/**
 * Registers the two records that have operators with Qt's type system and its D-Bus marshalling.
 *
 * Must be called before a proxy method that returns one of them; repeated calls have no effect.
 */
void registerOVIKRecords();
