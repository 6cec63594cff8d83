#include "jsontext.h"

#include <QtTest>

#include <fstream>

using namespace json;
using namespace std::string_literals;

Q_DECLARE_METATYPE(std::string)

namespace {

QString place(const Reader::Location& location)
{
    return QString::asprintf("%u:%u@%u", location.m_nLine, location.m_nLineOffset, location.m_nDocOffset);
}

// Returns "document", or the kind of exception, its message and its places as LINE:COLUMN@OFFSET.
QString outcome(const std::string& sText)
{
    try {
        readText(sText);
        return QStringLiteral("document");
    } catch (const Reader::ScanException& e) {
        return "scan: " + QString::fromLatin1(e.what()) + " at " + place(e.m_locError);
    } catch (const Reader::ParseException& e) {
        return "parse: " + QString::fromLatin1(e.what()) + " at " + place(e.m_locTokenBegin) + " to " +
               place(e.m_locTokenEnd);
    }
}

std::string repeat(int nTimes, const char* szText)
{
    return QByteArray(szText).repeated(nTimes).toStdString();
}

// Hands out "{}" byte by byte and breaks then, as a file on a device that is pulled out.
class BreakingBuffer : public std::streambuf
{
    int_type underflow() override
    {
        char* pNext = &m_sText.at(m_nNext++);
        setg(pNext, pNext, pNext + 1);
        return *pNext;
    }

    std::string m_sText = "{}";
    std::size_t m_nNext = 0;
};

} // namespace

class ReaderTest : public QObject
{
    Q_OBJECT

private slots:
    void reads_data()
    {
        QTest::addColumn<std::string>("text");
        QTest::addColumn<std::string>("written");
        QTest::newRow("white space") << "\t{\"\" : [ ], \"b\"\v:\f[true , false,{}]\r\n}\n"s
                                     << R"({"" : [],"b" : [true,false,{}]})"s;
        QTest::newRow("escapes") << "{\"\\\"\\\\\\/\\b\\f\\n\\r\\t\":\"x\\t\\\"y\"}"s
                                 << "{\"\\\"\\\\/\\b\\f\\n\\r\\t\" : \"x\\t\\\"y\"}"s;
        QTest::newRow("raw bytes") << "{\"\0\x01\b\f\n\r\t\x80\xff/\":null}"s
                                   << "{\"\0\x01\\b\\f\\n\\r\\t\x80\xff/\" : null}"s;
        QTest::newRow("numbers") << R"({"n":[0,-0,007,1.,-.5,1E+2,1e-2,0.1,1e21,123456789012345678]})"s
                                 << R"({"n" : [0,-0,7,1,-0.5,100,0.010000000000000000208,)"
                                    R"(0.10000000000000000555,1e+21,123456789012345680]})"s;
        QTest::newRow("limits") << R"({"n":[1e999,-1e999,1e-999,4.9e-324]})"s
                                << R"({"n" : [1.7976931348623157081e+308,-1.7976931348623157081e+308,0,)"
                                   R"(4.9406564584124654418e-324]})"s;
    }

    void reads()
    {
        QFETCH(std::string, text);
        QFETCH(std::string, written);
        QCOMPARE(writeText(readText(text)), written);
    }

    void outcomes_data()
    {
        QTest::addColumn<std::string>("text");
        QTest::addColumn<QString>("expected");
        const auto row = [](const std::string& sText, const char* szExpected) {
            QTest::newRow(sText.substr(0, 40).c_str()) << sText << QString::fromLatin1(szExpected);
        };
        row("", "parse: Unexpected end of token stream at 0:0@0 to 0:0@0");
        row("{\"a\":[1,\n2", "parse: Unexpected end of token stream at 1:1@10 to 1:1@10");
        row("{}\n \"x\\\"\"", "parse: Expected End of token stream; found x\" at 1:1@4 to 1:6@9");
        row("[]", "parse: Unexpected token: [ at 0:0@0 to 0:1@1");
        row("{\"a\":1,}", "parse: Unexpected token: } at 0:7@7 to 0:8@8");
        row("{\"a\":[1,]}", "parse: Unexpected token: ] at 0:8@8 to 0:9@9");
        row("{\"a\" 1}", "parse: Unexpected token: 1 at 0:5@5 to 0:6@6");
        row("{\"a\":1,\n\"a\" :[{}]}", "parse: Duplicate object member token: a at 1:0@8 to 1:3@11");
        row("{\"a\":\n +1}", "scan: Unexpected character in stream: + at 1:1@7");
        row("{\xa0}", "scan: Unexpected character in stream: \xa0 at 0:1@1");
        row("{\"a\":trueX}", "scan: Unexpected character in stream: X at 0:9@9");
        row("{\"a\":trUe}", "scan: Expected string: true at 0:8@8");
        row("{\"a\":nul", "scan: Expected string: null at 0:8@8");
        row("{\"a", "scan: Expected string: \" at 0:3@3");
        row("{\"a\\", "scan: Expected string: \" at 0:4@4");
        row("{\"\\u0041\":1}", "scan: Unrecognized escape sequence found in string: \\u at 0:4@4");
        row("{\"\\\n", "scan: Unrecognized escape sequence found in string: \\\n at 1:0@4");
        // A scan error wins over the parse errors before it, the error in a value over a name that is taken.
        row("[}]{\"a\" \"b\" ~", "scan: Unexpected character in stream: ~ at 0:12@12");
        row("{\"a\":1,\"a\":1.2.3}", "parse: Unexpected character in NUMBER token: . at 0:11@11 to 0:16@16");
        // 0xFF where no number could be read, or one that is too large.
        row("{\"n\":--5}", "parse: Unexpected character in NUMBER token: \xff at 0:5@5 to 0:8@8");
        row("{\"n\":1e400.5}", "parse: Unexpected character in NUMBER token: \xff at 0:5@5 to 0:12@12");
        // Limits.
        row(repeat(1023, "{\"a\":") + "[]" + repeat(1023, "}"), "document");
        row(repeat(1024, "{\"a\":") + "[]",
            "parse: Nesting deeper than 1024 levels at 0:5120@5120 to 0:5121@5121");
        row("{\"a\":[" + repeat(524284, "1,") + "1]}", "document");
        row("{\"a\" : [" + repeat(524285, "1,") + "1]}",
            "parse: More than 1048576 tokens at 0:1048580@1048580 to 0:1048581@1048581");
    }

    void outcomes()
    {
        QFETCH(std::string, text);
        QFETCH(QString, expected);
        QCOMPARE(outcome(text), expected);
    }

    // The last ones take ages when each name is compared with all others.
    void findsDuplicates()
    {
        for (const int nMembers : {1, 23, 24, 25, 26, 200000}) {
            std::string sText = "{";
            for (int n = 0; n < nMembers; ++n) {
                sText += "\"name" + std::to_string(n) + "\":" + std::to_string(n) + ",";
            }
            QCOMPARE(readText(sText + "\"last\":null}").Size(), std::size_t(nMembers + 1));
            const QString taken = QStringLiteral("name%1").arg(nMembers / 2);
            QVERIFY(outcome(sText + '"' + taken.toStdString() + "\":1}")
                        .startsWith("parse: Duplicate object member token: " + taken + " at 0:"));
        }
    }

    void appendsToTheObject()
    {
        Object oDocument = readText(R"({"a":1})");
        Reader::Read(oDocument, R"({"b":2})");
        QCOMPARE(writeText(oDocument), std::string(R"({"a" : 1,"b" : 2})"));
        QVERIFY_EXCEPTION_THROWN(Reader::Read(oDocument, R"({"a":4})"), Reader::ParseException);
    }

    void readsStreamsAsFarAsTheyGo()
    {
        Object oDocument;
        BreakingBuffer oBuffer;
        std::istream oBreaking(&oBuffer);
        Reader::Read(oDocument, oBreaking);
        QVERIFY(oBreaking.bad());
        std::ifstream oDirectory("/");
        QVERIFY_EXCEPTION_THROWN(Reader::Read(oDocument, oDirectory), Reader::ParseException);
    }
};

QTEST_APPLESS_MAIN(ReaderTest)
#include "tst_reader.moc"
