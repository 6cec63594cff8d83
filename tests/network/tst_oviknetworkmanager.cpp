#include "network/oviknetworkmanager.h"

#include "json/jsontext.h"

#include <QtTest>

#include <limits>

using OVIK::NetworkConfiguration;
using Interface = NetworkConfiguration::Interface;
using Dns = NetworkConfiguration::Dns;
using BridgeService = NetworkConfiguration::BridgeService;

namespace {

// A document with all fields set, as it is written.
const QString s_strDocument = QStringLiteral(
    R"({"version" : 1,"hostname" : "panel-01","dns" : {"servers" : [{"ip" : "192.168.1.1"},{"ip" : ""}],)"
    R"("search" : [{"name" : "plant.local"}]},"bridge" : {"enabled" : true,"interfaces" : ["br0","br1"],)"
    R"("list" : [{"name" : "br0","interfaces" : ["eth0","eth1"],"stp" : true,"fd" : 7,"udhcpc_opts" : "-q"}]},)"
    R"("interfaces" : [{"name" : "eth0","label" : "WAN","mac_address" : "00:00:00:00:00:01",)"
    R"("ip_address" : "192.168.1.20","netmask" : "255.255.255.0","gateway_ip" : "192.168.1.1","metric" : 3,)"
    R"("dhcp" : true,"configured" : true,"readonly" : false,"virtual" : false,"hidden" : false,)"
    R"("actual_netmask" : "255.255.0.0","actual_ip_address" : "192.168.1.21",)"
    R"("actual_gateway_ip" : "192.168.1.2","actual_metric" : 4},)"
    R"({"name" : "eth1","dhcp" : true,"configured" : false,"readonly" : true,"virtual" : false,"hidden" : false}]})");
const QString s_strEmpty =
    QStringLiteral(R"({"version" : 0,"hostname" : "","dns" : {"servers" : [],"search" : []},)"
                   R"("bridge" : {"enabled" : false,"interfaces" : [],"list" : []},"interfaces" : []})");

QStringList warnings;

void keepWarning(QtMsgType /*type*/, const QMessageLogContext& /*context*/, const QString& text)
{
    warnings.append(text);
}

template<class Record>
bool read(Record& record, const char* text)
{
    return record.fromJSONObject(readText(text));
}

// Reads a text; returns what the record writes of it.
template<class Record>
QString readAndWrite(const QString& text)
{
    Record record;
    try {
        return record.fromJSON(text) ? record.toJSON() : QStringLiteral("refused");
    } catch (const json::Exception&) {
        return QStringLiteral("throws");
    }
}

const QMap<QString, QString (*)(const QString&)> readers = {
    {"network manager", readAndWrite<NetworkConfiguration>},
    {"network interface", readAndWrite<Interface>},
    {"dns", readAndWrite<Dns>},
    {"bridge service", readAndWrite<BridgeService>}};

} // namespace

class NetworkManagerTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { warnings.clear(); }
    void initTestCase() { qInstallMessageHandler(keepWarning); }
    void cleanupTestCase() { qInstallMessageHandler(nullptr); }

    void readsAndWrites_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("written");
        QTest::addColumn<QStringList>("logged");
        const auto row = [](const char* reader, const QString& text, const QString& written,
                            const QStringList& logged = {}) {
            QTest::addRow("%s/%s", reader, qPrintable(text.left(60))) << text << written << logged;
        };
        row("network manager", s_strDocument, s_strDocument);
        row("network manager", s_strEmpty, s_strEmpty);
        row("network manager", "{}", s_strEmpty,
            {"Missing required field version, abort network configuration parsing"});
        row("network manager", R"({"version":0,"interfaces":[{"name":"a"},5]})", s_strEmpty,
            {"Cannot find interface name in json"});
        const QString flags =
            R"("dhcp" : false,"configured" : false,"readonly" : true,"virtual" : true,"hidden" : true)";
        row("network interface", R"({"name":""})", R"({"name" : "",)" + flags + '}',
            {"Empty interface name in json"});
        row("network interface", R"({"future":{},"metric":2.9,"actual_metric":-1e999,"name":"a","label":""})",
            R"({"name" : "a","metric" : 2,)" + flags + R"(,"actual_metric" : -2147483648})");
        row("network interface", R"({"name":"a","metric":1e300,"actual_metric":-0.9})",
            R"({"name" : "a","metric" : 2147483647,)" + flags + '}');
        row("dns", R"({"search":[{},{"name":1},3,{"name":"x"}],"servers":[{"ip":null},[],{"ip":"1.1.1.1"}]})",
            R"({"servers" : [{"ip" : ""},{"ip" : ""},{"ip" : "1.1.1.1"}],)"
            R"("search" : [{"name" : ""},{"name" : ""},{"name" : ""},{"name" : "x"}]})");
        // Latin-1 before reading, UTF-8 in strings, Latin-1 when writing.
        row("dns",
            QStringLiteral(R"({"search":[{"name":"%1"},{"name":"%2"}]})").arg(QChar(0x20AC), "\u00C3\u00BC"),
            QStringLiteral(R"({"servers" : [],"search" : [{"name" : "?"},{"name" : "%1"}]})")
                .arg(QChar(0xFC)));
        row("bridge service",
            R"({"list":[{"fd":1},{"name":"b","interfaces":[],"stp":false},{"name":"b","interfaces":["x"]},)"
            R"({"name":"a","std":false}]})",
            R"({"enabled" : false,"interfaces" : [],"list" : [{"name" : "a","interfaces" : [],"stp" : false,)"
            R"("fd" : 5,"udhcpc_opts" : "-t 30 -T 35"},{"name" : "b","interfaces" : [],"stp" : true,"fd" : 5,)"
            R"("udhcpc_opts" : "-t 30 -T 35"}]})",
            {"Missing bridge name in json", R"(Bridge  "b"  aready inserted)",
             R"(Missing bridge interfaces list in json from bridge  "a")"});
        for (const char* text :
             {R"("version":"1")", R"("version":0,"hostname":1)", R"("version":0,"dns":[])",
              R"("version":0,"dns":{"servers":{}})", R"("version":0,"bridge":null)",
              R"("version":0,"bridge":{"list":[{"name":"a","interfaces":[],"fd":"x"}]})",
              R"("version":0,"bridge":{"list":[1]})", R"("version":0,"bridge":{"interfaces":[1]})",
              R"("version":0,"interfaces":{})", R"("version":0,"interfaces":[{"name":"a"},{"name":1}])",
              R"("version":0,"interfaces":[{"name":"a","dhcp":1}])"}) {
            row("network manager", '{' + QString(text) + '}', "throws");
        }
        for (const QString& reader : readers.keys()) {
            row(qPrintable(reader), "{", "refused",
                {"Parse error in " + reader + " json Unexpected end of token stream"});
            row(qPrintable(reader), "~", "refused",
                {"Scan error in " + reader + " json  Unexpected character in stream: ~"});
        }
        row("network manager", "", "refused", {"Trying to parse empty network configuration json!"});
        row("network interface", "", "refused", {"Trying to parse empty network interface json!"});
        row("dns", "", "refused", {"Trying to parse dns json!"});
        row("bridge service", "", "refused", {"Trying to parse empty bridge json!"});
    }

    void readsAndWrites()
    {
        QFETCH(QString, text);
        QTEST(readers[QString(QTest::currentDataTag()).section('/', 0, 0)](text), "written");
        QTEST(warnings, "logged");
    }

    // What is written could have been read into the wrong field and written from there again.
    void readsEveryField()
    {
        NetworkConfiguration document;
        QVERIFY(document.fromJSON(s_strDocument));
        const Interface& eth0 = *document.interfaces.value("eth0");
        QCOMPARE(QStringList({eth0.label, eth0.mac_address, eth0.ip_address, eth0.netmask, eth0.gateway_ip,
                              eth0.actual_ip_address, eth0.actual_netmask, eth0.actual_gateway_ip}),
                 QStringList({"WAN", "00:00:00:00:00:01", "192.168.1.20", "255.255.255.0", "192.168.1.1",
                              "192.168.1.21", "255.255.0.0", "192.168.1.2"}));
        QVERIFY(eth0.metric == 3 && eth0.actual_metric == 4);
        QVERIFY(eth0.dhcp && eth0.configured && !eth0.readOnly && !eth0.virt && !eth0.hidden);
    }

    // What stands before the wrong value is read, what comes after it is not, in the order of the reading.
    void readsInOrderUntilItThrows()
    {
        Interface record;
        QVERIFY_EXCEPTION_THROWN(
            read(record, R"({"dhcp":true,"actual_metric":5,"metric":"x","label":"l","name":"n"})"),
            json::Exception);
        QVERIFY(record.name == "n" && record.label == "l" && record.actual_metric == 0 && !record.dhcp);
    }

    void versionHeldBlocksReading()
    {
        NetworkConfiguration document;
        json::Object notANumber;
        notANumber["version"] = json::Number(std::numeric_limits<double>::quiet_NaN());
        QVERIFY(document.fromJSONObject(notANumber) && document.version == 0);
        QVERIFY(read(document, R"({"version":3,"hostname":"b"})"));
        QVERIFY(!read(document, R"({"version":4,"hostname":"c"})"));
        QCOMPARE(warnings, QStringList("Unsupported network manager version  4"));
        QVERIFY(document.fromJSON(R"({"version":4})") && document.hostname == "b");
    }

    void readsAgain()
    {
        NetworkConfiguration document;
        QVERIFY(read(document, R"({"version":0,"interfaces":[{"name":"a"},{"name":"b"}]})"));
        QVERIFY(read(document, R"({"version":0})"));
        QVERIFY(!read(document, R"({"version":0,"hostname":"h","interfaces":[{"name":"c"},{"name":"c"}]})"));
        QCOMPARE(warnings, QStringList(R"(Interface  "c"  already defined)"));
        QVERIFY(document.hostname == "h" && document.interfaces.keys() == QStringList({"a", "b"}));
        QVERIFY(read(document, R"({"version":0,"interfaces":[]})") && document.interfaces.isEmpty());
        Interface record;
        record.label = "kept";
        QVERIFY(read(record, R"({"name":"a","metric":2})") && record.label == "kept" && record.metric == 2);
        Dns dns;
        dns.nameservers = dns.search = QStringList("old");
        QVERIFY(read(dns, R"({"servers":[{"ip":"1.1.1.1"}]})"));
        QVERIFY(dns.nameservers == QStringList("1.1.1.1") && dns.search.isEmpty());
        // A bridge service adds to what it has.
        BridgeService service;
        QVERIFY(read(service, R"({"interfaces":["a"],"list":[{"name":"x","interfaces":["i"]}]})"));
        QVERIFY(read(service, R"({"interfaces":["b"],"list":[{"name":"y","interfaces":[]}]})"));
        QCOMPARE(service.interfaces + service.list.keys(), QStringList({"a", "b", "x", "y"}));
    }

    void copiesAreDeep()
    {
        NetworkConfiguration original;
        QVERIFY(original.fromJSON(s_strDocument));
        NetworkConfiguration copy(original);
        QVERIFY(copy == original);
        copy.interfaces.value("eth0")->label = "changed";
        QVERIFY(!(copy == original));
        copy = original;
        copy.bridge.list.value("br0")->fd = 8;
        QVERIFY(!(copy == original) && original.toJSON() == s_strDocument);
        const NetworkConfiguration& same = copy;
        copy = same;
        copy.bridge = same.bridge;
        QCOMPARE(copy.bridge.list.value("br0")->fd, 8);
    }

    void nullRecordsCountAsAbsent()
    {
        NetworkConfiguration document;
        document.interfaces["a"];
        document.bridge.list["b"];
        QVERIFY(document == NetworkConfiguration() && document.toJSON() == s_strEmpty);
        QVERIFY(NetworkConfiguration(document).interfaces.isEmpty());
    }
};

QTEST_APPLESS_MAIN(NetworkManagerTest)
#include "tst_oviknetworkmanager.moc"
