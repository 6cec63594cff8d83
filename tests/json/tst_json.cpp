#include "jsontext.h"
#include "support/difference.h"

#include <QtTest>

#include <fstream>

using namespace json;
using namespace std::string_literals;

namespace {

// Returns what the text is written as, or the exception with its message and places as LINE:COLUMN@OFFSET.
std::string outcome(const std::string& sText)
{
    const auto place = [](const Reader::Location& o) {
        return QString::asprintf("%u:%u@%u", o.m_nLine, o.m_nLineOffset, o.m_nDocOffset).toStdString();
    };
    try {
        return writeText(readText(sText));
    } catch (const Reader::ScanException& e) {
        return "scan: "s + e.what() + " at " + place(e.m_locError);
    } catch (const Reader::ParseException& e) {
        return "parse: "s + e.what() + " at " + place(e.m_locTokenBegin) + " to " + place(e.m_locTokenEnd);
    }
}

std::string repeat(int nTimes, const char* szText)
{
    return QByteArray(szText).repeated(nTimes).toStdString();
}

} // namespace

template<>
char* QTest::toString(const std::string& sText)
{
    return toString(QByteArray::fromStdString(sText));
}

/** The reader and the writer, then the elements that a document consists of. */
class JSONTest : public QObject
{
    Q_OBJECT

private slots:
    void readsAndWrites_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QByteArray>("expected");
        const std::string sDeepest = repeat(1023, R"({"a" : )") + "[]" + repeat(1023, "}");
        const std::string sSiblings = R"({"a" : [)" + repeat(1024, "{},[],") + "1]}";
        const std::string sLong = R"({"a" : [)" + repeat(1048576, "1,") + "1]}";
        const std::pair<std::string, std::string> aRows[] = {
            {"\t{\"\" : [ ], \"b\"\v:\f[true , false,{}]\r\n}\n", R"({"" : [],"b" : [true,false,{}]})"},
            // moc takes \" for the end of a raw string. NOLINTBEGIN(modernize-raw-string-literal)
            {"{\"\\\"\\\\\\/\\b\\f\\n\\r\\t\":\"x\\t\\\"y\"}",
             "{\"\\\"\\\\/\\b\\f\\n\\r\\t\" : \"x\\t\\\"y\"}"},
            // NOLINTEND(modernize-raw-string-literal)
            {"{\"\0\x01\b\f\n\r\t\x80\xff/\":null}"s, "{\"\0\x01\\b\\f\\n\\r\\t\x80\xff/\" : null}"s},
            {R"({"n":[0,-0,007,9.,-.5,1E+2,1e-2,0.1,1e21,123456789012345678]})",
             R"({"n" : [0,-0,7,9,-0.5,100,0.010000000000000000208,)"
             R"(0.10000000000000000555,1e+21,123456789012345680]})"},
            {R"({"n":[1e999,-1e999,1234.5000000000e-330,4.9e-324]})",
             R"({"n" : [1.7976931348623157081e+308,-1.7976931348623157081e+308,0,4.9406564584124654418e-324]})"},
            {"", "parse: Unexpected end of token stream at 0:0@0 to 0:0@0"},
            {"{\"a\":[1,\n2", "parse: Unexpected end of token stream at 1:1@10 to 1:1@10"},
            {"{}\n\n \"x\\\"\"", "parse: Expected End of token stream; found x\" at 2:1@5 to 2:6@10"},
            {"[]", "parse: Unexpected token: [ at 0:0@0 to 0:1@1"},
            {R"({"a":1,})", "parse: Unexpected token: } at 0:7@7 to 0:8@8"},
            {R"({"a":[1,]})", "parse: Unexpected token: ] at 0:8@8 to 0:9@9"},
            {R"({"a" 1})", "parse: Unexpected token: 1 at 0:5@5 to 0:6@6"},
            {"{\"a\":1,\n\"a\" :[{}]}", "parse: Duplicate object member token: a at 1:0@8 to 1:3@11"},
            {"{\"a\":\n +1}", "scan: Unexpected character in stream: + at 1:1@7"},
            {"{\xa0}", "scan: Unexpected character in stream: \xa0 at 0:1@1"},
            {R"({"a":trueX})", "scan: Unexpected character in stream: X at 0:9@9"},
            {R"({"a":trUe})", "scan: Expected string: true at 0:8@8"},
            {"{\"a\":nul", "scan: Expected string: null at 0:8@8"},
            {"{\"a", "scan: Expected string: \" at 0:3@3"},
            {"{\"a\\", "scan: Expected string: \" at 0:4@4"},
            {R"({"\u0041":1})", R"(scan: Unrecognized escape sequence found in string: \u at 0:4@4)"},
            {"{\"\\\n", "scan: Unrecognized escape sequence found in string: \\\n at 1:0@4"},
            // A scan error wins over parse errors before it, an error in a value over a duplicate name.
            {R"([}]{"a" "b" ~)", "scan: Unexpected character in stream: ~ at 0:12@12"},
            {R"({"a":1,"a":1.2.3})", "parse: Unexpected character in NUMBER token: . at 0:11@11 to 0:16@16"},
            // 0xFF if no number could be read or it is too large.
            {R"({"n":--5})", "parse: Unexpected character in NUMBER token: \xff at 0:5@5 to 0:8@8"},
            {R"({"n":1e400.5})", "parse: Unexpected character in NUMBER token: \xff at 0:5@5 to 0:12@12"},
            // Limits, and where there is none.
            {sDeepest, sDeepest},
            {sSiblings, sSiblings},
            {repeat(1024, R"({"a":)") + "[]",
             "parse: Nesting deeper than 1024 levels at 0:5120@5120 to 0:5121@5121"},
            {sLong, sLong},
            {sLong + '~', "scan: Unexpected character in stream: ~ at 0:2097163@2097163"}};
        for (const auto& [sText, sOutcome] : aRows) {
            const auto oText = QByteArray::fromStdString(sText);
            QTest::addRow("%s", oText.left(40).toPercentEncoding(" {}[]:,\"\\").data())
                << oText << QByteArray::fromStdString(sOutcome);
        }
    }

    void readsAndWrites()
    {
        QFETCH(QByteArray, text);
        QFETCH(QByteArray, expected);
        QCOMPARE(difference(QByteArray::fromStdString(outcome(text.toStdString())), expected), "");
    }

    // The largest object takes minutes if each name is compared with all others.
    void findsDuplicatesAndReadsStreams()
    {
        for (const int nMembers : {1, 24, 25, 200000}) {
            std::string sText = R"({"name0":0)";
            for (int n = 1; n < nMembers; ++n) {
                sText += ",\"name" + std::to_string(n) + "\":1";
            }
            std::ofstream("/tmp/names.json") << sText + '}';
            std::ifstream oFile("/tmp/names.json");
            Object oDocument = readText(R"({"a":1})"); // is added to
            Reader::Read(oDocument, oFile);
            QCOMPARE(oDocument.Size(), std::size_t(nMembers + 1));
            const std::string sTaken = "name" + std::to_string(nMembers / 2);
            const std::string sExpected = "parse: Duplicate object member token: " + sTaken + " at 0:";
            sText += ",\"" + sTaken + "\":1}";
            QCOMPARE(outcome(sText).substr(0, sExpected.size()), sExpected);
            QCOMPARE(messageOf([&] { Reader::Read(oDocument, R"({"a":4})"); }),
                     "Duplicate object member token: a");
            QCOMPARE(oDocument.Size(), std::size_t(nMembers + 1));
        }
        Object oDocument;
        std::ifstream oDirectory("/"); // cannot be read
        QCOMPARE(messageOf([&] { Reader::Read(oDocument, oDirectory); }), "Unexpected end of token stream");
    }

    void writesInTheFormatOfTheStream()
    {
        std::ostringstream oText;
        oText << std::scientific << std::uppercase << std::showpos;
        Writer::Write(readText(R"({"a":1234567.5})"), oText);
        QCOMPARE(oText.str(), R"({"a" : +1.23456750000000000000E+06})"s);
    }

    void flushesOrLeavesTheErrorInTheStream()
    {
        for (const std::size_t nSize : {1U, 20000U}) {
            Object oDocument;
            oDocument["a"] = String(std::string(nSize, 'x'));
            std::ofstream oFull("/dev/full");
            Writer::Write(oDocument, oFull);
            QVERIFY(oFull.bad());
        }
    }

    void comparesByKindAndValue()
    {
        // No comparison, in either order, may use the conversions, which discard.
        const std::tuple oKinds{Object(), Array(), Number(), String(), Boolean(), Null()};
        std::apply([&oKinds](const auto&... kinds) { (compareWithEach(kinds, oKinds), ...); }, oKinds);
        QVERIFY(UnknownElement() == Null());
        QVERIFY(Number(1) == 1);
        QVERIFY(1.0 == Number(1));
        QVERIFY(!(Number(1) == 2));
        QVERIFY(String("a") == "a");
        const std::string aTexts[] = {R"({"a":1,"b":[{},[2]]})", R"({"b":[{},[2]],"a":1})",
                                      R"({"a":1,"c":[{},[2]]})", R"({"a":1,"b":[{},[2,3]]})", "{}"};
        for (const std::string& sOne : aTexts) {
            for (const std::string& sOther : aTexts) {
                QCOMPARE(readText(sOne) == readText(sOther), sOne == sOther);
            }
        }
    }

    void castsConvertsAndMoves()
    {
        UnknownElement oElement(Number(3));
        QCOMPARE(messageOf([&] { oElement.CastTo<String>(); }), "Bad cast");
        oElement.ConvertTo<Number>().Value() += 1;
        QVERIFY(oElement == Number(4));
        QVERIFY(oElement.ConvertTo<Array>().Empty());
        QVERIFY(oElement.ConvertTo<Null>() == Null());
        UnknownElement oSource(String("x"));
        const UnknownElement oTarget(std::move(oSource));
        QVERIFY(oSource == Null());
        QVERIFY(UnknownElement(oSource) == oSource);
        QCOMPARE(oTarget.CastTo<String>().Value(), "x"s);
    }

    void copiesAreDeepAndMayBeOfDescendants()
    {
        Object oObject = readText(R"({"a":{"b":{"c":["x"]}}})");
        const Object oCopy(oObject);
        oObject = oObject["a"].ConvertTo<Object>();
        oObject = std::move(oObject["b"].ConvertTo<Object>());
        Array& oArray = oObject["c"];
        oArray[1] = oArray;
        oArray = oArray[1].ConvertTo<Array>();
        oObject["c"] = oArray[0];
        QCOMPARE(writeText(oObject), R"({"c" : "x"})"s);
        QCOMPARE(writeText(oCopy), R"({"a" : {"b" : {"c" : ["x"]}}})"s);
    }

    void deepTreesFitTheStack()
    {
        Object oObject;
        for (int nLevel = 0; nLevel < 4000; nLevel += 2) {
            Array oArray;
            oArray.Insert(std::move(oObject));
            oObject = Object();
            oObject["a"] = std::move(oArray);
        }
        const Object oCopy(oObject);
        QVERIFY(oCopy == oObject);
        QCOMPARE(writeText(oCopy), repeat(2000, R"({"a" : [)") + "{}" + repeat(2000, "]}"));
    }

    void insertsAndGuardsEnds()
    {
        Object oObject;
        oObject["x"];
        QVERIFY(oObject.Insert({"y", Number(2)})->name == "y");
        QVERIFY(oObject.Insert({"a"}, oObject.Begin())->name == "a");
        QCOMPARE(messageOf([&] { oObject.Insert({"x"}); }), "Object member already exists: x");
        Array& oArray = oObject["x"];
        oArray[2] = Number(3);
        QCOMPARE(messageOf([&] { std::as_const(oArray)[3]; }), "Array out of bounds");
        QVERIFY(messageOf([&] { oArray[std::size_t(-1)]; }) != "no exception");
        QVERIFY(*oArray.Insert(Number(0), oArray.Begin()) == Number(0));
        QVERIFY(*oArray.Insert(Number(5)) == Number(5));
        QCOMPARE(writeText(oObject), R"({"a" : null,"x" : [0,null,null,3,5],"y" : 2})"s);
    }

private:
    // Elements of default values: each equals its own kind alone.
    template<class Element, class Kinds>
    static void compareWithEach(const Element& element, const Kinds& oKinds)
    {
        std::apply(
            [&](const auto&... kinds) {
                QCOMPARE((int(element == kinds) + ...), 1);
                QCOMPARE((int(UnknownElement(element) == kinds) + ...), 1);
                QCOMPARE((int(kinds == UnknownElement(element)) + ...), 1);
                QCOMPARE((int(element != kinds) + ...), 5);
            },
            oKinds);
    }

    template<class Function>
    static QString messageOf(Function fn)
    {
        try {
            return fn(), "no exception";
        } catch (const std::exception& e) {
            return e.what();
        }
    }
};

QTEST_GUILESS_MAIN(JSONTest)
#include "tst_json.moc"
