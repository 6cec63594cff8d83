#include "world.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <iostream>

namespace {

constexpr int s_nMaxCallCharacters = 8 * 1024 * 1024;

enum eArgument {
    eArgument_None,
    eArgument_JSON,
    eArgument_Text,
    eArgument_Number,
    eArgument_MemberAndNumber
};

struct sFault
{
    const char* m_szName;
    eArgument m_eArgument;
    int m_nDefault;
};

// In the order of World::eFault.
const sFault s_aFaults[] = {
    {"well", eArgument_None, -1},
    {"absent", eArgument_None, -1},
    {"root-late", eArgument_Number, -1},
    {"errors", eArgument_Text, -1},
    {"silent", eArgument_Text, -1},
    {"malformed-json", eArgument_Text, -1},
    {"wrong-types", eArgument_JSON, -1},
    {"short-records", eArgument_Number, 2},
    {"unknown-interface", eArgument_Text, -1},
    {"vanishes", eArgument_MemberAndNumber, 500},
    {"slow", eArgument_Number, 1000},
};

bool readNumber(const QString& strText, int& nNumber)
{
    if (strText.isEmpty()) {
        return true;
    }
    bool bValid = false;
    const int nRead = strText.toInt(&bValid);
    if (!bValid || nRead < 0) {
        return false;
    }
    nNumber = nRead;
    return true;
}

/** Takes the number out of strText: the whole of it, or what follows a colon. */
bool splitArgument(eArgument eKind, QString& strText, int& nNumber)
{
    if (eKind == eArgument_None) {
        return strText.isEmpty();
    }
    if (eKind == eArgument_JSON) {
        return strText.isEmpty() || strText == QLatin1String("json");
    }
    if (eKind == eArgument_Text) {
        return true;
    }
    const QString strNumber = eKind == eArgument_Number ? strText : strText.section(QLatin1Char(':'), 1);
    strText = eKind == eArgument_Number ? QString() : strText.section(QLatin1Char(':'), 0, 0);
    return readNumber(strNumber, nNumber);
}

QString lineOf(const QDBusMessage& oCall)
{
    const QByteArray oArguments =
        QJsonDocument(QJsonArray::fromVariantList(oCall.arguments())).toJson(QJsonDocument::Compact);
    return QStringLiteral("%1 %2(%3)")
        .arg(oCall.path(), oCall.member(), QString::fromUtf8(oArguments.mid(1, oArguments.size() - 2)));
}

} // namespace

QStringList World::names()
{
    QStringList oNames;
    for (const sFault& oFault : s_aFaults) {
        oNames << QLatin1String(oFault.m_szName);
    }
    return oNames;
}

bool World::set(const QString& strName, const QString& strArgument)
{
    const int nFault = names().indexOf(strName);
    if (nFault < 0) {
        return false;
    }
    QString strText = strArgument;
    int nNumber = s_aFaults[nFault].m_nDefault;
    if (!splitArgument(s_aFaults[nFault].m_eArgument, strText, nNumber)) {
        return false;
    }
    m_eFault = static_cast<eFault>(nFault);
    m_strArgument = strText;
    m_nNumber = nNumber;
    emit changed();
    return true;
}

bool World::strikes(eFault eWanted, const QString& strMember) const
{
    return m_eFault == eWanted && (m_strArgument.isEmpty() || m_strArgument == strMember);
}

void World::noteCall(const QDBusMessage& oCall)
{
    const QString strLine = lineOf(oCall);
    std::cout << strLine.toStdString() << std::endl;
    m_oCalls << strLine;
    m_nCallCharacters += strLine.size();
    while (m_nCallCharacters > s_nMaxCallCharacters) {
        m_nCallCharacters -= m_oCalls.takeFirst().size();
    }
}

void World::clearCalls()
{
    m_oCalls.clear();
    m_nCallCharacters = 0;
}
