#include "jsontext.h"

#include <QtTest>

#include <array>
#include <limits>
#include <locale>

using namespace json;

namespace {

std::string numberText(std::ostream& ostr, std::ostringstream& oText, double dNumber)
{
    Object oObject;
    oObject["n"] = Number(dNumber);
    oText.str("");
    Writer::Write(oObject, ostr);
    const std::string sText = oText.str();
    return sText.substr(7, sText.size() - 8);
}

/** Groups digits and has a decimal comma. */
class GermanNumbers : public std::numpunct<char>
{
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

/** Takes some bytes and then fails. */
class FullDevice : public std::streambuf
{
public:
    explicit FullDevice(char* pBegin, char* pEnd) { setp(pBegin, pEnd); }
};

} // namespace

class WriterTest : public QObject
{
    Q_OBJECT

private slots:
    void writes();
    void numbers();
    void keepsPrecisionAndFormat();
    void ignoresLocales();
    void leavesErrorsInTheStream();
};

void WriterTest::writes()
{
    const QJsonArray table = readTable(QFINDTESTDATA("written.json"));
    QVERIFY(!table.isEmpty());
    for (const QJsonValue& row : table) {
        const Object oDocument = readText(row["text"].toString().toLatin1().toStdString());
        QCOMPARE(writeText(oDocument), row["written"].toString().toLatin1().toStdString());
    }
}

void WriterTest::numbers()
{
    using Limits = std::numeric_limits<double>;
    Array oNumbers;
    for (const double dNumber : {1.0, 100.0, -2.5, 0.1, 1e21, -0.0, 1e-7, Limits::max(), Limits::denorm_min(),
                                 Limits::infinity(), Limits::quiet_NaN()}) {
        oNumbers.Insert(Number(dNumber));
    }
    Object oObject;
    oObject["n"] = oNumbers;
    QCOMPARE(writeText(oObject),
             std::string(R"({"n" : [1,100,-2.5,0.10000000000000000555,1e+21,-0,9.9999999999999995475e-08,)"
                         "1.7976931348623157081e+308,4.9406564584124654418e-324,inf,nan]}"));
}

void WriterTest::keepsPrecisionAndFormat()
{
    std::ostringstream oText;
    numberText(oText, oText, 1);
    QCOMPARE(oText.precision(), std::streamsize(20));
    oText << std::scientific << std::uppercase;
    QCOMPARE(numberText(oText, oText, 1.5), std::string("1.50000000000000000000E+00"));
    oText << std::fixed;
    QCOMPARE(numberText(oText, oText, 1.5), std::string("1.50000000000000000000"));
    oText << std::defaultfloat << std::showpos;
    QCOMPARE(numberText(oText, oText, 1.5), std::string("+1.5"));
}

void WriterTest::ignoresLocales()
{
    const std::locale oGerman(std::locale::classic(), new GermanNumbers);
    const std::locale oBefore = std::locale::global(oGerman);
    std::ostringstream oText;
    oText.imbue(oGerman);
    const std::string sGeneral = numberText(oText, oText, 1234567.5);
    oText << std::fixed;
    const std::string sFixed = numberText(oText, oText, 1234567.5);
    const Object oRead = readText(R"({"a":1234567.5,"b":1.0000000000e-330})");
    std::locale::global(oBefore);
    QCOMPARE(sGeneral, std::string("1234567.5"));
    QCOMPARE(sFixed, std::string("1234567.50000000000000000000"));
    QVERIFY(oRead.Find("a")->element == Number(1234567.5));
    QVERIFY(oRead.Find("b")->element == Number(0));
}

void WriterTest::leavesErrorsInTheStream()
{
    const Object oDocument = readText(R"({"name":["some","strings"]})");
    std::array<char, 30> szDevice = {};
    for (std::size_t nRoom = 0; nRoom < 28; ++nRoom) {
        FullDevice oDevice(szDevice.data(), szDevice.data() + nRoom);
        std::ostream oStream(&oDevice);
        Writer::Write(oDocument, oStream);
        QVERIFY2(oStream.bad(), QByteArray::number(int(nRoom)));
    }
    std::ostringstream oFailed;
    oFailed.setstate(std::ios_base::failbit);
    Writer::Write(oDocument, oFailed);
    QVERIFY(oFailed.str().empty());
}

QTEST_APPLESS_MAIN(WriterTest)
#include "tst_writer.moc"
