#include "network/oviknetworkmanager.h"

#include "json/jsontext.h"

#include <QtTest>

#include <limits>

using OVIK::NetworkConfiguration;
using Interface = NetworkConfiguration::Interface;
using Dns = NetworkConfiguration::Dns;
using BridgeService = NetworkConfiguration::BridgeService;

namespace {

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

// Reads a text; returns what the record writes of it. Leaks of what was read are found by the sanitizer.
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
    {"NetworkConfiguration", readAndWrite<NetworkConfiguration>},
    {"Interface", readAndWrite<Interface>},
    {"Dns", readAndWrite<Dns>},
    {"BridgeService", readAndWrite<BridgeService>}};

// Returns the rows of the test's table: each a class, a text, what the class writes of it, and the warnings.
QJsonArray texts()
{
    return readTable(QFINDTESTDATA("texts.json"));
}

// Returns a document that has all fields set: the table's first.
QString fullDocument()
{
    return texts().first()["text"].toString();
}

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
        QTest::addColumn<QJsonValue>("row");
        QVERIFY(!texts().isEmpty());
        for (const QJsonValue row : texts()) {
            QTest::addRow("%s %s", qPrintable(row["class"].toString()),
                          qPrintable(row["text"].toString().left(40)))
                << row;
        }
    }

    void readsAndWrites()
    {
        QFETCH(QJsonValue, row);
        QCOMPARE(readers[row["class"].toString()](row["text"].toString()), row["written"].toString());
        QCOMPARE(QJsonArray::fromStringList(warnings), row["warnings"].toArray());
    }

    // What is written could have been read into the wrong field and written from there again.
    void readsEveryField()
    {
        NetworkConfiguration document;
        QVERIFY(document.fromJSON(fullDocument()));
        const Interface& eth0 = *document.interfaces.value("eth0");
        QCOMPARE(QVariantList({eth0.label, eth0.mac_address, eth0.ip_address, eth0.netmask, eth0.gateway_ip,
                               eth0.actual_ip_address, eth0.actual_netmask, eth0.actual_gateway_ip,
                               eth0.metric, eth0.actual_metric}),
                 QVariantList({"WAN", "00:00:00:00:00:01", "192.168.1.20", "255.255.255.0", "192.168.1.1",
                               "192.168.1.21", "255.255.0.0", "192.168.1.2", 3, 4}));
        QVERIFY(eth0.dhcp && eth0.configured && !eth0.readOnly && !eth0.virt && !eth0.hidden);
    }

    // What stands before the wrong value is read, what comes after it is not, in the order of the reading.
    void readsInOrderUntilItThrows()
    {
        Interface record;
        QVERIFY_EXCEPTION_THROWN(read(record,
                                      R"({"mac_address":"m","dhcp":true,"actual_metric":5,"metric":"x",)"
                                      R"("actual_gateway_ip":"g","label":"l","name":"n"})"),
                                 json::Exception);
        QVERIFY(record.name == "n" && record.label == "l" && record.actual_gateway_ip == "g");
        QVERIFY(record.actual_metric == 0 && !record.dhcp && record.mac_address.isEmpty());
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
        QVERIFY(document.fromJSON(R"({"version":4})"));
        QVERIFY(document.version == 3 && document.hostname == "b");
    }

    void refusedDocumentKeepsInterfaces()
    {
        NetworkConfiguration document;
        QVERIFY(read(document, R"({"version":0,"interfaces":[{"name":"old"}]})"));
        QVERIFY(!read(document, R"({"version":2,"hostname":"h","bridge":{"interfaces":["b"]},)"
                                R"("interfaces":[{"name":"eth0"},{"name":"eth0"}]})"));
        QCOMPARE(warnings, QStringList(R"(Interface  "eth0"  already defined)"));
        QCOMPARE(document.interfaces.keys(), QStringList("old"));
        QVERIFY(document.version == 2 && document.hostname == "h" && !document.bridge.interfaces.isEmpty());
    }

    void absentKeysKeepFields()
    {
        NetworkConfiguration document;
        QVERIFY(read(document, R"({"version":0,"interfaces":[{"name":"eth0"},{"name":"eth1"}]})"));
        QVERIFY(read(document, R"({"version":0})"));
        QCOMPARE(document.interfaces.keys(), QStringList({"eth0", "eth1"}));
        QVERIFY(read(document, R"({"version":0,"interfaces":[]})"));
        QVERIFY(document.interfaces.isEmpty());
        Interface record;
        record.label = "kept";
        QVERIFY(read(record, R"({"name":"eth0","metric":2})"));
        QVERIFY(record.label == "kept" && record.metric == 2);
        Dns dns;
        dns.nameservers = dns.search = QStringList("old");
        QVERIFY(read(dns, R"({"servers":[{"ip":"1.1.1.1"}]})"));
        QVERIFY(dns.nameservers == QStringList("1.1.1.1") && dns.search.isEmpty());
        // A bridge service adds to what it has.
        BridgeService service;
        QVERIFY(read(service, R"({"interfaces":["a"],"list":[{"name":"x","interfaces":["i"],"fd":9}]})"));
        QVERIFY(read(service, R"({"interfaces":["b"],"list":[{"name":"y","interfaces":[]}]})"));
        QCOMPARE(service.interfaces + service.list.keys(), QStringList({"a", "b", "x", "y"}));
        QCOMPARE(service.list.value("x")->fd, 9);
    }

    void copiesAreDeep()
    {
        NetworkConfiguration original;
        QVERIFY(original.fromJSON(fullDocument()));
        NetworkConfiguration copy(original);
        QVERIFY(copy == original);
        copy.interfaces.value("eth0")->label = "changed";
        QVERIFY(!(copy == original));
        copy = original;
        copy.bridge.list.value("br0")->stp = false;
        QVERIFY(!(copy == original));
        QCOMPARE(original.toJSON(), fullDocument());
        const NetworkConfiguration& same = copy;
        copy = same;
        copy.bridge = same.bridge;
        // A null record counts as absent.
        copy.interfaces.insert("null", nullptr);
        copy.bridge.list.insert("null", nullptr);
        QVERIFY(NetworkConfiguration(copy) == copy && copy == NetworkConfiguration(copy));
        QCOMPARE(NetworkConfiguration(copy).interfaces.keys(), QStringList({"eth0", "eth1"}));
        QCOMPARE(copy.toJSON(), NetworkConfiguration(copy).toJSON());
        QVERIFY(!copy.bridge.list.value("br0")->stp);
    }
};

QTEST_APPLESS_MAIN(NetworkManagerTest)
#include "tst_oviknetworkmanager.moc"
