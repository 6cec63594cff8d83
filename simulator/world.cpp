#include "world.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QMap>

#include <iostream>

namespace {

constexpr int s_nMaxCalls = 10000;

/** The worlds with the number that stands for none in the argument. */
const QMap<QString, int> s_oNumbers = {{"absent", -1},    {"errors", -1},    {"malformed-json", -1},
                                       {"refuses", -1},   {"root-late", -1}, {"short-records", 2},
                                       {"silent", -1},    {"slow", 1000},    {"unknown-interface", -1},
                                       {"vanishes", 500}, {"well", -1},      {"wrong-types", -1}};

} // namespace

bool World::set(const QString& strName, const QString& strArgument)
{
    if (!s_oNumbers.contains(strName)) {
        return false;
    }
    m_strName = strName;
    m_strArgument = is("vanishes") ? strArgument.section(QLatin1Char(':'), 0, 0) : strArgument;
    bool bNumber = false;
    m_nNumber = strArgument.section(QLatin1Char(':'), -1).toInt(&bNumber);
    m_nNumber = bNumber ? m_nNumber : s_oNumbers.value(strName);
    emit changed();
    return true;
}

bool World::concerns(const char* szName, const QString& strWhat) const
{
    return is(szName) && (m_strArgument.isEmpty() || m_strArgument == strWhat);
}

void World::noteCall(const QDBusMessage& oCall)
{
    const QByteArray oArguments =
        QJsonDocument(QJsonArray::fromVariantList(oCall.arguments())).toJson(QJsonDocument::Compact);
    const QString strArguments = QString::fromUtf8(oArguments.mid(1, oArguments.size() - 2));
    m_oCalls << QStringLiteral("%1 %2(%3)").arg(oCall.path(), oCall.member(), strArguments);
    std::cout << m_oCalls.last().toStdString() << std::endl;
    if (m_oCalls.size() > s_nMaxCalls) {
        m_oCalls.removeFirst();
    }
}
