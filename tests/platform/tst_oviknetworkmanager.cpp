#include "platform/oviknetworkmanager.h"

#include "json/reader.h"

#include <QtTest>

using OVIK::NetworkConfiguration;
using Interface = NetworkConfiguration::Interface;
using Dns = NetworkConfiguration::Dns;
using BridgeService = NetworkConfiguration::BridgeService;

namespace {

// A document with all fields set, as it is written.
const QString s_strDocument =
    R"({"version" : 1,"hostname" : "h","dns" : {"servers" : [{"ip" : "s"},{"ip" : ""}],"search" : [{"name" : "d"}]},)"
    R"("bridge" : {"enabled" : true,"interfaces" : ["b","c"],"list" : [{"name" : "b","interfaces" : ["e","f"],)"
    R"("stp" : true,"fd" : 7,"udhcpc_opts" : "-q"}]},"interfaces" : [{"name" : "e","label" : "l",)"
    R"("mac_address" : "m","ip_address" : "i","netmask" : "n","gateway_ip" : "g","metric" : 3,)"
    R"("dhcp" : true,"configured" : true,"readonly" : false,"virtual" : false,"hidden" : false,)"
    R"("actual_netmask" : "an","actual_ip_address" : "ai","actual_gateway_ip" : "ag","actual_metric" : 4},)"
    R"({"name" : "f","dhcp" : true,"configured" : false,"readonly" : true,"virtual" : false,"hidden" : false}]})";
const QString s_strEmpty =
    R"({"version" : 0,"hostname" : "","dns" : {"servers" : [],"search" : []},)"
    R"("bridge" : {"enabled" : false,"interfaces" : [],"list" : []},"interfaces" : []})";
QString g_strLog;

// Reads a text; returns what the record writes of it, the log, and whether the object is refused.
template<class Record>
QString outcome(const QString& text)
{
    g_strLog.clear();
    Record record;
    try {
        if (!record.fromJSON(text)) {
            return "refused" + g_strLog;
        }
        const QString result = record.toJSON() + g_strLog;
        json::Object object;
        json::Reader::Read(object, text.toLatin1().toStdString());
        return Record().fromJSONObject(object) ? result : result + "\nrefused";
    } catch (const json::Exception&) {
        return "throws" + g_strLog;
    }
}

} // namespace

class NetworkManagerTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        qInstallMessageHandler(
            [](QtMsgType, const QMessageLogContext&, const QString& text) { g_strLog += '\n' + text; });
    }

    void readsAndWritesDocuments()
    {
        QCOMPARE(outcome<NetworkConfiguration>(s_strDocument), s_strDocument);
        const std::pair<const char*, const char*> aEmpty[] = {
            {"{}", "\nMissing required field version, abort network configuration parsing"},
            {R"({"version":0,"interfaces":[{"name":"a"},5]})", "\nCannot find interface name in json"},
            {R"({"version":0,"interfaces":[{"name":""}]})", "\nEmpty interface name in json"},
            {R"({"version":0,"interfaces":[{"name":"c"},{"name":"c"}]})",
             "\nInterface  \"c\"  already defined"}};
        for (const auto& [szText, szLogged] : aEmpty) {
            QCOMPARE(outcome<NetworkConfiguration>(szText), s_strEmpty + szLogged + "\nrefused");
        }
        for (const char* szText :
             {R"("hostname":1)", R"("dns":[])", R"("dns":{"servers":{}})", R"("bridge":null)",
              R"("bridge":{"list":[1]})", R"("bridge":{"list":[{"name":"a","interfaces":[],"fd":"x"}]})",
              R"("bridge":{"interfaces":[1]})", R"("interfaces":{})", R"("interfaces":[{"name":1}])",
              R"("interfaces":[{"name":"a","dhcp":1}])"}) {
            QCOMPARE(outcome<NetworkConfiguration>(QString(R"({"version":0,%1})").arg(szText)), "throws");
        }
    }

    void readsAndWritesParts()
    {
        QCOMPARE(
            outcome<Interface>(R"({"future":{},"metric":-2.9,"actual_metric":1e300,"name":"a","label":""})"),
            R"({"name" : "a","metric" : -2,"dhcp" : false,"configured" : false,"readonly" : true,)"
            R"("virtual" : true,"hidden" : true,"actual_metric" : 2147483647})");
        QCOMPARE(outcome<Dns>(
                     R"({"search":[{},{"name":1},3,{"name":"x"}],"servers":[{"ip":null},[],{"ip":"y"}]})"),
                 R"({"servers" : [{"ip" : ""},{"ip" : ""},{"ip" : "y"}],)"
                 R"("search" : [{"name" : ""},{"name" : ""},{"name" : ""},{"name" : "x"}]})");
        // Latin-1 before reading, UTF-8 in strings, Latin-1 when writing.
        QCOMPARE(outcome<Dns>(R"({"search":[{"name":"€"},{"name":"Ã¼"}]})"),
                 R"({"servers" : [],"search" : [{"name" : "?"},{"name" : "ü"}]})");
        QCOMPARE(outcome<BridgeService>(R"({"list":[{"fd":1},{"name":"b","interfaces":[],"stp":false},)"
                                        R"({"name":"b","interfaces":["x"]},{"name":"a","std":false}]})"),
                 R"({"enabled" : false,"interfaces" : [],"list" : [)"
                 R"({"name" : "a","interfaces" : [],"stp" : false,"fd" : 5,"udhcpc_opts" : "-t 30 -T 35"},)"
                 R"({"name" : "b","interfaces" : [],"stp" : true,"fd" : 5,"udhcpc_opts" : "-t 30 -T 35"}]})"
                 "\nMissing bridge name in json\nBridge  \"b\"  aready inserted"
                 "\nMissing bridge interfaces list in json from bridge  \"a\"");
    }

    void refusesTexts()
    {
        const std::tuple<QString (*)(const QString&), const char*, const char*> aReaders[] = {
            {outcome<NetworkConfiguration>, "empty network configuration", "network manager"},
            {outcome<Interface>, "empty network interface", "network interface"},
            {outcome<Dns>, "dns", "dns"},
            {outcome<BridgeService>, "empty bridge", "bridge service"}};
        for (const auto& [fnOutcome, szEmpty, szName] : aReaders) {
            QCOMPARE(fnOutcome(""), QString("refused\nTrying to parse %1 json!").arg(szEmpty));
            QCOMPARE(fnOutcome("{").section('\n', 1),
                     QString("Parse error in %1 json Unexpected end of token stream").arg(szName));
            QCOMPARE(fnOutcome("~").section('\n', 1),
                     QString("Scan error in %1 json  Unexpected character in stream: ~").arg(szName));
        }
    }

    // What is refused leaves the interfaces as they are; so does all after a version other than 0.
    void readsAgain()
    {
        NetworkConfiguration document;
        QVERIFY(document.fromJSON(R"({"version":0,"interfaces":[{"name":"a"},{"name":"b"}]})"));
        QVERIFY(document.fromJSON(R"({"version":0,"hostname":"h","interfaces":[{"name":"c"},{}]})"));
        QVERIFY(document.hostname == "h" && document.interfaces.keys() == QStringList({"a", "b"}));
        QVERIFY(document.fromJSON(R"({"version":3,"interfaces":[]})") && document.interfaces.isEmpty());
        QVERIFY(document.fromJSON(R"({"version":4,"hostname":"i"})") && document.hostname == "h");
        QVERIFY(g_strLog.endsWith("Unsupported network manager version  4"));
        QVERIFY(!document.fromJSONObject(document.toJSONObject()));
    }

    void nullRecordsCountAsAbsent()
    {
        NetworkConfiguration document;
        document.interfaces["a"];
        document.bridge.list["b"];
        QVERIFY(document == NetworkConfiguration() && document.toJSON() == NetworkConfiguration().toJSON());
        QVERIFY(NetworkConfiguration(document).interfaces.isEmpty());
    }
};

QTEST_GUILESS_MAIN(NetworkManagerTest)
#include "tst_oviknetworkmanager.moc"
