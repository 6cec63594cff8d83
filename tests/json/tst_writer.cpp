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

// What each kind of element is written as stands in tst_reader.
class WriterTest : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { std::locale::global(std::locale::classic()); }
    void keepsFormatsButNoLocale()
    {
        using Base = std::ios_base;
        std::locale::global(std::locale(std::locale::classic(), new GermanNumbers));
        Object oDocument = readText(R"({"a":1234567.5,"b":1.0000000000e-330})");
        QVERIFY(oDocument == readText(R"({"a":12345675e-1,"b":0})"));
        oDocument["b"] = Number(std::numeric_limits<double>::infinity());
        for (const auto& [nFlags, sWritten] : std::initializer_list<std::pair<Base::fmtflags, std::string>>{
                 {Base::dec, "1234567.5"},
                 {Base::fixed, "1234567.50000000000000000000"},
                 {Base::scientific | Base::uppercase, "1.23456750000000000000E+06"},
                 {Base::showpos, "+1234567.5"},
                 {Base::showpoint, "1234567.5000000000000"}}) {
            std::ostringstream oText;
            oText.flags(nFlags);
            Writer::Write(oDocument, oText);
            QVERIFY2(oText.str().find(R"({"a" : )" + sWritten + R"(,"b" : )") == 0, oText.str().c_str());
            QCOMPARE(oText.precision(), std::streamsize(20));
        }
        QVERIFY(writeText(oDocument).find(" : inf}") != std::string::npos);
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
