#include "datetime/datetimesettings.h"

#include "json/reader.h"

#include <QDebug>
#include <QFile>
#include <QFileInfo>

namespace {

constexpr qint64 s_nMaxSettings = 1024LL * 1024;

} // namespace

bool datetimesettings::readFile(const QString& strPath, QString& strText)
{
    QFile oFile(strPath);
    if (!oFile.exists()) {
        return false;
    }
    // Opening anything else, such as a pipe, could block.
    if (!QFileInfo(oFile).isFile() || !oFile.open(QIODevice::ReadOnly | QIODevice::Text)) {
        qWarning() << "datetime file missing:" << qPrintable(strPath);
        return false;
    }
    strText = QString::fromLatin1(oFile.read(s_nMaxSettings).constData());
    qWarning() << strText;
    return true;
}

bool datetimesettings::serverFromText(const QString& strText, QString& strAddress)
{
    if (strText.isEmpty()) {
        qWarning() << "Trying to parse empty datetime json!";
        return false;
    }
    try {
        json::Object oRoot;
        json::Reader::Read(oRoot, strText.toLatin1().toStdString());
        serverFromObject(oRoot, strAddress);
        return true; // Kept, see docs/compatibility.md
    } catch (const json::Reader::ParseException& e) {
        qWarning() << "Parse error in datetime json" << e.what();
    } catch (const json::Reader::ScanException& e) {
        qWarning() << "Scan error in datetime json " << e.what();
    } catch (...) {
        qWarning() << "Unknown datetime json error ";
    }
    return false;
}

bool datetimesettings::serverFromObject(const json::Object& oRoot, QString& strAddress)
{
    const auto itNTP = oRoot.Find("ntp");
    if (itNTP == oRoot.End()) {
        qWarning() << "datetime json error: "
                   << "Could not find 'ntp' json object";
        return false;
    }
    const auto& oNTP = itNTP->element.CastTo<json::Object>();
    const auto itServer = oNTP.Find("server");
    if (itServer == oNTP.End()) {
        qWarning() << "datetime json error: "
                   << "Could not find 'server' entry";
        return false;
    }
    strAddress = QString::fromStdString(itServer->element.CastTo<json::String>().Value());
    return true;
}
