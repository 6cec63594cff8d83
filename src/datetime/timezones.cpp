#include "datetime/timezones.h"

#include <QRegularExpression>

namespace {

QString betweenBrackets(const QString& strText)
{
    const auto nBegin = strText.indexOf('[') + 1;
    const auto nLength = strText.indexOf(']') - nBegin;
    return strText.mid(nBegin, qMax<decltype(nLength)>(-1, nLength)); // -1: to the end
}

QString shellWord(const QString& strText)
{
    static const QRegularExpression s_oZoneName(QStringLiteral("\\A[A-Za-z0-9/_+.-]*\\z"));
    if (s_oZoneName.match(strText).hasMatch()) {
        return strText;
    }
    return '\'' + QString(strText).replace('\'', QLatin1String("'\\''")) + '\'';
}

} // namespace

QStringList timezones::fromOutput(const QString& strOutput)
{
    QStringList oZones = betweenBrackets(strOutput).remove('\'').split(',');
    for (QString& strZone : oZones) {
        strZone = strZone.trimmed();
    }
    return oZones;
}

QString timezones::script(const QString& strTemplate, const QString& strZone)
{
    const QString strWord = shellWord(strZone.trimmed());
    // Both at once: the second replacement would also replace a "%2" in the zone and break its quotes.
    return strTemplate.arg(strWord, strWord);
}
