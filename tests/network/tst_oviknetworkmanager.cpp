#include "network/oviknetworkmanager.h"

#include "json/reader.h"

#include <QtTest>

#include <limits>
#include <sstream>

using OVIK::NetworkConfiguration;
using Interface = NetworkConfiguration::Interface;
using Dns = NetworkConfiguration::Dns;
using BridgeService = NetworkConfiguration::BridgeService;

namespace {

QStringList warnings;

void keepWarning(QtMsgType type, const QMessageLogContext& /*context*/, const QString& text)
{
    if (type == QtWarningMsg) {
        warnings.append(text);
    }
}

json::Object parse(const char* text)
{
    std::istringstream stream(text);
    json::Object object;
    json::Reader::Read(object, stream);
    return object;
}

template<class Record>
bool read(Record& record, const char* text)
{
    return record.fromJSONObject(parse(text));
}

/** Reads a text with each class; returns what the class has in it. */
template<class Record>
QString readAndWrite(const QString& text)
{
    Record record;
    return record.fromJSON(text) ? record.toJSON() : QStringLiteral("refused");
}

QString readAndWrite(const QString& className, const QString& text)
{
    if (className == "Interface") {
        return readAndWrite<Interface>(text);
    }
    if (className == "Dns") {
        return readAndWrite<Dns>(text);
    }
    return className == "BridgeService" ? readAndWrite<BridgeService>(text)
                                        : readAndWrite<NetworkConfiguration>(text);
}

const char* const fullDocument =
    R"({"version" : 1,"hostname" : "panel-01",)"
    R"("dns" : {"servers" : [{"ip" : "192.168.1.1"},{"ip" : ""}],"search" : [{"name" : "plant.local"}]},)"
    R"("bridge" : {"enabled" : true,"interfaces" : ["br0","br1"],"list" : [)"
    R"({"name" : "br0","interfaces" : ["eth0","eth1"],"stp" : true,"fd" : 7,"udhcpc_opts" : "-q"},)"
    R"({"name" : "br1","interfaces" : [],"stp" : true,"fd" : 5,"udhcpc_opts" : "-t 30 -T 35"}]},)"
    R"("interfaces" : [{"name" : "eth0","label" : "WAN","mac_address" : "00:00:00:00:00:01",)"
    R"("ip_address" : "192.168.1.20","netmask" : "255.255.255.0","gateway_ip" : "192.168.1.1","metric" : 3,)"
    R"("dhcp" : true,"configured" : true,"readonly" : false,"virtual" : false,"hidden" : false,)"
    R"("actual_netmask" : "255.255.0.0","actual_ip_address" : "192.168.1.21","actual_gateway_ip" : "192.168.1.2",)"
    R"("actual_metric" : 4},)"
    R"({"name" : "eth1","dhcp" : false,"configured" : false,"readonly" : true,"virtual" : true,"hidden" : true}]})";

const char* const emptyDocument =
    R"({"version" : 0,"hostname" : "","dns" : {"servers" : [],"search" : []},)"
    R"("bridge" : {"enabled" : false,"interfaces" : [],"list" : []},"interfaces" : []})";

} // namespace

class NetworkManagerTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { warnings.clear(); }
    void initTestCase() { qInstallMessageHandler(keepWarning); }
    void cleanupTestCase() { qInstallMessageHandler(nullptr); }

    void texts_data();
    void texts();
    void readsEveryField();
    void wrongTypesThrow_data();
    void wrongTypesThrow();
    void truncatesNumbers_data();
    void truncatesNumbers();
    void versionHeldBlocksReading();
    void refusedDocumentKeepsInterfaces_data();
    void refusedDocumentKeepsInterfaces();
    void interfacesAreReplacedOnlyWhenPresent();
    void absentKeysKeepFields();
    void bridgesAreAdded();
    void copiesAreDeep();
};

void NetworkManagerTest::texts_data()
{
    QTest::addColumn<QString>("className");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("written");
    QTest::addColumn<QStringList>("warning");
    const auto row = [](const char* className, const QString& text, const QString& written,
                        const QStringList& warning = {}) {
        QTest::addRow("%s %s", className, qPrintable(text.left(40)))
            << className << text << written << warning;
    };
    const auto malformed = [&row](const char* className, const char* empty, const char* parseError,
                                  const char* scanError) {
        row(className, "", "refused", {empty});
        row(className, "{\"a\":1", "refused", {parseError + QString(" Unexpected end of token stream")});
        row(className, "~", "refused", {scanError + QString("  Unexpected character in stream: ~")});
    };
    malformed("NetworkConfiguration", "Trying to parse empty network configuration json!",
              "Parse error in network manager json", "Scan error in network manager json");
    malformed("BridgeService", "Trying to parse empty bridge json!", "Parse error in bridge service json",
              "Scan error in bridge service json");
    malformed("Interface", "Trying to parse empty network interface json!",
              "Parse error in network interface json", "Scan error in network interface json");
    malformed("Dns", "Trying to parse dns json!", "Parse error in dns json", "Scan error in dns json");

    row("NetworkConfiguration", fullDocument, fullDocument);
    row("NetworkConfiguration", emptyDocument, emptyDocument);
    row("NetworkConfiguration", "{}", emptyDocument,
        {"Missing required field version, abort network configuration parsing"});
    row("NetworkConfiguration",
        R"({"interfaces":[{"name":"b"},{"name":"B"},{"name":"a"}],"future":{},"version":0})",
        QString(emptyDocument)
            .replace(
                R"("interfaces" : []})",
                R"("interfaces" : [{"name" : "B","dhcp" : false,"configured" : false,"readonly" : true,"virtual" : true,"hidden" : true},)"
                R"({"name" : "a","dhcp" : false,"configured" : false,"readonly" : true,"virtual" : true,"hidden" : true},)"
                R"({"name" : "b","dhcp" : false,"configured" : false,"readonly" : true,"virtual" : true,"hidden" : true}]})"));

    const QString flags =
        R"("dhcp" : false,"configured" : false,"readonly" : true,"virtual" : true,"hidden" : true})";
    row("Interface", R"({"name":"e","metric":0,"label":"","actual_metric":0.9})",
        R"({"name" : "e",)" + flags);
    row("Interface", "{}", R"({"name" : "",)" + flags, {"Cannot find interface name in json"});
    row("Interface", R"({"name":""})", R"({"name" : "",)" + flags, {"Empty interface name in json"});
    // Bytes of 0x80 and above are broken on the way in and written as Latin-1.
    row("Interface", QString::fromUtf8(R"({"name":"ü€"})"), R"({"name" : "??",)" + flags);
    row("Interface", QString::fromLatin1("{\"name\":\"\xc3\xbc\"}"),
        QString::fromUtf8(R"({"name" : "ü",)") + flags);

    row("Dns", R"({"search":[{},{"name":1},3,{"name":"x"}],"servers":[{"ip":null},[],{"ip":"1.1.1.1"}]})",
        R"({"servers" : [{"ip" : ""},{"ip" : ""},{"ip" : "1.1.1.1"}],)"
        R"("search" : [{"name" : ""},{"name" : ""},{"name" : ""},{"name" : "x"}]})");

    const QString noBridge = R"({"enabled" : false,"interfaces" : [],"list" : []})";
    row("BridgeService", R"({"list":[]})", noBridge);
    row("BridgeService", R"({"list":[{"fd":1}]})", noBridge, {"Missing bridge name in json"});
    row("BridgeService",
        R"({"list":[{"name":"b","interfaces":[],"stp":false},{"name":"b","interfaces":["x"]},{"name":"a"}]})",
        R"({"enabled" : false,"interfaces" : [],"list" : [)"
        R"({"name" : "a","interfaces" : [],"stp" : true,"fd" : 5,"udhcpc_opts" : "-t 30 -T 35"},)"
        R"({"name" : "b","interfaces" : [],"stp" : true,"fd" : 5,"udhcpc_opts" : "-t 30 -T 35"}]})",
        {R"(Bridge  "b"  aready inserted)", R"(Missing bridge interfaces list in json from bridge  "a")"});
    row("BridgeService", R"({"list":[{"name":"b","interfaces":[],"std":false}]})",
        R"({"enabled" : false,"interfaces" : [],"list" : [)"
        R"({"name" : "b","interfaces" : [],"stp" : false,"fd" : 5,"udhcpc_opts" : "-t 30 -T 35"}]})");
}

void NetworkManagerTest::texts()
{
    QFETCH(QString, className);
    QFETCH(QString, text);
    QFETCH(QString, written);
    QFETCH(QStringList, warning);
    QCOMPARE(readAndWrite(className, text), written);
    QCOMPARE(warnings, warning);
}

// What is written could have been read into the wrong field and written from there again.
void NetworkManagerTest::readsEveryField()
{
    NetworkConfiguration document;
    QVERIFY(document.fromJSON(fullDocument));
    QCOMPARE(document.version, 1);
    QCOMPARE(document.dns.nameservers, QStringList({"192.168.1.1", ""}));
    QCOMPARE(document.bridge.list.value("br0")->fd, 7);
    QCOMPARE(document.bridge.list.value("br0")->udhcpOpts, QString("-q"));
    const Interface& eth0 = *document.interfaces.value("eth0");
    QCOMPARE(QStringList({eth0.label, eth0.mac_address, eth0.ip_address, eth0.netmask, eth0.gateway_ip}),
             QStringList({"WAN", "00:00:00:00:00:01", "192.168.1.20", "255.255.255.0", "192.168.1.1"}));
    QCOMPARE(QStringList({eth0.actual_ip_address, eth0.actual_netmask, eth0.actual_gateway_ip}),
             QStringList({"192.168.1.21", "255.255.0.0", "192.168.1.2"}));
    QVERIFY(eth0.metric == 3 && eth0.actual_metric == 4 && eth0.dhcp && eth0.configured);
    QVERIFY(!eth0.readOnly && !eth0.virt && !eth0.hidden);
    for (const char* key : {"dhcp", "configured", "readonly", "virtual", "hidden"}) {
        Interface one;
        QVERIFY(read(one, (QByteArray("{\"name\":\"e\",\"") + key + "\":true}").constData()));
        const QList<bool> flags = {one.dhcp, one.configured, one.readOnly, one.virt, one.hidden};
        QCOMPARE(flags.mid(0, 2), QList<bool>({qstrcmp(key, "dhcp") == 0, qstrcmp(key, "configured") == 0}));
        QVERIFY(read(one, (QByteArray("{\"name\":\"e\",\"") + key + "\":false}").constData()));
        QCOMPARE(one.readOnly, qstrcmp(key, "readonly") != 0);
        QCOMPARE(one.virt, qstrcmp(key, "virtual") != 0);
        QCOMPARE(one.hidden, qstrcmp(key, "hidden") != 0);
    }
}

void NetworkManagerTest::wrongTypesThrow_data()
{
    QTest::addColumn<QString>("text");
    for (
        const char* text :
        {R"({"version":"1"})", R"({"version":0,"hostname":1})", R"({"version":0,"dns":[]})",
         R"({"version":0,"dns":{"servers":{}}})", R"({"version":0,"bridge":null})",
         R"({"version":0,"bridge":{"list":[{"name":"a","interfaces":[]},{"name":"b","interfaces":[],"fd":"x"}]}})",
         R"({"version":0,"bridge":{"list":[1]}})", R"({"version":0,"bridge":{"interfaces":[1]}})",
         R"({"version":0,"interfaces":{}})", R"({"version":0,"interfaces":[{"name":"a"},{"name":1}]})",
         R"({"version":0,"interfaces":[{"name":"a"},{"name":"b","metric":"x"}]})",
         R"({"version":0,"interfaces":[{"name":"a","dhcp":1}]})"}) {
        QTest::newRow(text) << text;
    }
}

// Leaks of what was read before are found by the sanitizer.
void NetworkManagerTest::wrongTypesThrow()
{
    QFETCH(QString, text);
    NetworkConfiguration document;
    document.interfaces.insert("old", new Interface);
    QVERIFY_EXCEPTION_THROWN(document.fromJSON(text), json::Exception);
    QCOMPARE(document.interfaces.keys(), QStringList("old"));
    QVERIFY(document.bridge.list.isEmpty());
    QVERIFY(warnings.isEmpty());
}

void NetworkManagerTest::truncatesNumbers_data()
{
    QTest::addColumn<double>("number");
    QTest::addColumn<int>("expected");
    QTest::newRow("down") << 2.9 << 2;
    QTest::newRow("up") << -1.5 << -1;
    QTest::newRow("largest") << 2147483647.0 << std::numeric_limits<int>::max();
    QTest::newRow("too large") << 1e300 << std::numeric_limits<int>::max();
    QTest::newRow("too small") << -std::numeric_limits<double>::infinity() << std::numeric_limits<int>::min();
    QTest::newRow("no number") << std::numeric_limits<double>::quiet_NaN() << 0;
}

void NetworkManagerTest::truncatesNumbers()
{
    QFETCH(double, number);
    QFETCH(int, expected);
    json::Object object;
    object["version"] = json::Number(number);
    NetworkConfiguration document;
    QVERIFY(document.fromJSONObject(object));
    QCOMPARE(document.version, expected);
}

void NetworkManagerTest::versionHeldBlocksReading()
{
    NetworkConfiguration document;
    QVERIFY(read(document, R"({"version":0,"hostname":"a"})"));
    QVERIFY(read(document, R"({"version":3,"hostname":"b"})"));
    QVERIFY(!read(document, R"({"version":4,"hostname":"c"})"));
    QCOMPARE(warnings, QStringList("Unsupported network manager version  4"));
    QVERIFY(document.fromJSON(R"({"version":4})"));
    QVERIFY(document.version == 3 && document.hostname == "b");
}

void NetworkManagerTest::refusedDocumentKeepsInterfaces_data()
{
    QTest::addColumn<QString>("interfaces");
    QTest::addColumn<QString>("warning");
    QTest::newRow("twice") << R"([{"name":"eth0"},{"name":"eth0"}])"
                           << R"(Interface  "eth0"  already defined)";
    QTest::newRow("no name") << R"([{"name":"eth0"},{}])"
                             << "Cannot find interface name in json";
    QTest::newRow("no object") << R"([{"name":"eth0"},5])"
                               << "Cannot find interface name in json";
    QTest::newRow("empty name") << R"([{"name":""}])"
                                << "Empty interface name in json";
}

void NetworkManagerTest::refusedDocumentKeepsInterfaces()
{
    QFETCH(QString, interfaces);
    QFETCH(QString, warning);
    NetworkConfiguration document;
    auto* old = new Interface;
    document.interfaces.insert("old", old);
    const QByteArray text =
        R"({"version":2,"hostname":"h","bridge":{"list":[{"name":"b","interfaces":[]}]},"interfaces":)" +
        interfaces.toLatin1() + "}";
    QVERIFY(!read(document, text.constData()));
    QCOMPARE(warnings, QStringList(warning));
    QCOMPARE(document.interfaces.size(), 1);
    QCOMPARE(document.interfaces.value("old"), old);
    QVERIFY(document.version == 2 && document.hostname == "h" && document.bridge.list.contains("b"));
}

void NetworkManagerTest::interfacesAreReplacedOnlyWhenPresent()
{
    NetworkConfiguration document;
    QVERIFY(read(document, R"({"version":0,"interfaces":[{"name":"eth0"},{"name":"eth1"}]})"));
    QVERIFY(read(document, R"({"version":0})"));
    QCOMPARE(document.interfaces.keys(), QStringList({"eth0", "eth1"}));
    QVERIFY(read(document, R"({"version":0,"interfaces":[]})"));
    QVERIFY(document.interfaces.isEmpty());
}

void NetworkManagerTest::absentKeysKeepFields()
{
    Interface record;
    record.label = "kept";
    record.hidden = false;
    QVERIFY(read(record, R"({"name":"eth0","metric":2})"));
    QVERIFY(record.label == "kept" && !record.hidden && record.metric == 2);
    Dns dns;
    dns.nameservers = QStringList("1.1.1.1");
    QVERIFY(read(dns, "{}"));
    QVERIFY(dns.nameservers.isEmpty());
}

void NetworkManagerTest::bridgesAreAdded()
{
    BridgeService service;
    QVERIFY(read(service, R"({"interfaces":["a"],"list":[{"name":"x","interfaces":["i"],"fd":9}]})"));
    QVERIFY(
        read(service,
             R"({"interfaces":["b"],"list":[{"name":"y","interfaces":[]},{"name":"x","interfaces":[]}]})"));
    QCOMPARE(service.interfaces, QStringList({"a", "b"}));
    QCOMPARE(service.list.keys(), QStringList({"x", "y"}));
    QCOMPARE(service.list.value("x")->fd, 9);
    QCOMPARE(warnings, QStringList(R"(Bridge  "x"  aready inserted)"));
}

void NetworkManagerTest::copiesAreDeep()
{
    NetworkConfiguration original;
    QVERIFY(original.fromJSON(fullDocument));
    NetworkConfiguration copy(original);
    QVERIFY(copy == original);
    copy.interfaces.value("eth0")->label = "changed";
    QVERIFY(!(copy == original));
    copy = original;
    QVERIFY(copy == original);
    copy.bridge.list.value("br0")->stp = false;
    QVERIFY(!(copy == original));
    const NetworkConfiguration& same = copy;
    copy = same;
    copy.bridge = same.bridge;
    QVERIFY(!copy.bridge.list.value("br0")->stp);
    QCOMPARE(original.toJSON(), QString(fullDocument));
    copy.bridge.list.value("br0")->stp = true;
    delete copy.interfaces.take("eth1");
    QVERIFY(!(copy == original));
}

QTEST_APPLESS_MAIN(NetworkManagerTest)
#include "tst_oviknetworkmanager.moc"
