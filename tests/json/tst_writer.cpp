#include "jsontext.h"

#include <QtTest>

#include <array>
#include <limits>
#include <locale>

using namespace json;

namespace {

// Groups digits and has a decimal comma.
class GermanNumbers : public std::numpunct<char>
{
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

// Takes some bytes and then fails.
class FullDevice : public std::streambuf
{
public:
    explicit FullDevice(std::size_t nRoom) { setp(m_szBytes.data(), m_szBytes.data() + nRoom); }

    int m_nSyncs = 0;

private:
    int sync() override { return ++m_nSyncs, 0; }

    std::array<char, 64> m_szBytes = {};
};

} // namespace

class WriterTest : public QObject
{
    Q_OBJECT

private slots:
    void writes()
    {
        const QJsonArray table = readTable(QFINDTESTDATA("written.json"));
        QVERIFY(!table.isEmpty());
        for (const QJsonValue& row : table) {
            const Object oDocument = readText(row["text"].toString().toLatin1().toStdString());
            QCOMPARE(writeText(oDocument), row["written"].toString().toLatin1().toStdString());
        }
        // No text can hold these.
        Object oObject;
        oObject["i"] = Number(std::numeric_limits<double>::infinity());
        oObject["n"] = Number(std::numeric_limits<double>::quiet_NaN());
        QCOMPARE(writeText(oObject), std::string(R"({"i" : inf,"n" : nan})"));
    }

    void cleanup() { std::locale::global(std::locale::classic()); }
    void keepsFormatsButNoLocale()
    {
        using Base = std::ios_base;
        const std::vector<std::pair<Base::fmtflags, std::string>> expected = {
            {Base::dec, "1234567.5"},
            {Base::fixed, "1234567.50000000000000000000"},
            {Base::scientific | Base::uppercase, "1.23456750000000000000E+06"},
            {Base::showpos, "+1234567.5"},
            {Base::showpoint, "1234567.5000000000000"}};
        for (const std::locale& oLocale :
             {std::locale::classic(), std::locale(std::locale::classic(), new GermanNumbers)}) {
            std::locale::global(oLocale);
            const Object oDocument = readText(R"({"a":1234567.5,"b":1.0000000000e-330})");
            QVERIFY(oDocument.Find("a")->element == Number(1234567.5));
            QVERIFY(oDocument.Find("b")->element == Number(0));
            std::ostringstream oText;
            for (const auto& [nFlags, sExpected] : expected) {
                oText.str("");
                oText.flags(nFlags);
                Writer::Write(oDocument, oText);
                QCOMPARE(oText.str().substr(0, 8 + sExpected.size()), R"({"a" : )" + sExpected + ',');
                QCOMPARE(oText.precision(), std::streamsize(20));
            }
        }
    }

    void flushesOrLeavesTheErrorInTheStream()
    {
        const Object oDocument = readText(R"({"name":["some","strings"]})");
        const std::size_t nSize = writeText(oDocument).size();
        for (std::size_t nRoom = 0; nRoom <= nSize; ++nRoom) {
            FullDevice oDevice(nRoom);
            std::ostream oStream(&oDevice);
            Writer::Write(oDocument, oStream);
            QCOMPARE(oStream.bad(), nRoom < nSize);
            QCOMPARE(oDevice.m_nSyncs, nRoom < nSize ? 0 : 1);
        }
        std::ostringstream oFailed;
        oFailed.setstate(std::ios_base::failbit);
        Writer::Write(oDocument, oFailed);
        QVERIFY(oFailed.str().empty());
    }
};

QTEST_APPLESS_MAIN(WriterTest)
#include "tst_writer.moc"
