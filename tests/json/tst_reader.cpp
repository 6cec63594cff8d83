#include "jsontext.h"

#include <QtTest>

#include <random>

using namespace json;

namespace {

QString place(const Reader::Location& location)
{
    return QStringLiteral("%1:%2@%3")
        .arg(location.m_nLine)
        .arg(location.m_nLineOffset)
        .arg(location.m_nDocOffset);
}

/** Returns what reading ends in: "document", or the kind of exception, its message and its places. */
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

std::string repeated(const std::string& sText, int nTimes)
{
    return QByteArray::fromStdString(sText).repeated(nTimes).toStdString();
}

/** Builds random elements. */
class RandomElement
{
public:
    UnknownElement Make(int nLevels)
    {
        switch (Roll(nLevels == 0 ? 4 : 6)) {
        case 0:
            return Null();
        case 1:
            return Boolean(Roll(2) == 0);
        case 2:
            return String(MakeString());
        case 3:
            return Number(Roll(2) == 0 ? Roll(1000)
                                       : std::ldexp(Roll(1 << 30) - (1 << 29), Roll(2000) - 1075));
        case 4:
            return MakeObject(nLevels - 1);
        default:
            Array oArray;
            for (int n = Roll(6); n > 0; --n) {
                oArray.Insert(Make(nLevels - 1));
            }
            return oArray;
        }
    }

    Object MakeObject(int nLevels)
    {
        Object oObject;
        for (int n = Roll(40); n > 0; --n) {
            oObject[MakeString()] = Make(nLevels);
        }
        return oObject;
    }

private:
    std::string MakeString()
    {
        std::string sString(std::size_t(Roll(24)), ' ');
        std::generate(sString.begin(), sString.end(), [this] { return static_cast<char>(Roll(256)); });
        return sString;
    }

    int Roll(int nSides) { return int(m_Generator() % unsigned(nSides)); }

    std::mt19937 m_Generator{20240229};
};

} // namespace

class ReaderTest : public QObject
{
    Q_OBJECT

private slots:
    void readsValues();
    void appendsToTheObject();
    void numbers();
    void outcomes_data();
    void outcomes();
    void chunkBordersDoNotShow();
    void largeAndHostileTexts_data();
    void largeAndHostileTexts();
    void randomBytesNeverCrash();
    void findsDuplicatesAmongMany();
    void readsWhatWasWritten();
    void unreadableStreamIsEmpty();
};

void ReaderTest::readsValues()
{
    const Object oDocument =
        readText("\t{\"\" : [ ], \"b\"\v:\f[1,-2.5e1,true , false,null,\"\\\"\\\\\\/\\b\\f\\n\\r\\t\"],\r\n"
                 "\"raw\":\"\x01\n\x80\xff\"}\n ");
    QCOMPARE(oDocument.Size(), std::size_t(3));
    QVERIFY(oDocument.Begin()->element == Array());
    const Array& oArray = oDocument.Find("b")->element;
    QVERIFY(oArray[0] == Number(1) && oArray[1] == Number(-25) && oArray[2] == Boolean(true));
    QVERIFY(oArray[3] == Boolean(false) && oArray[4] == Null() && oArray[5] == String("\"\\/\b\f\n\r\t"));
    QVERIFY(oDocument.Find("raw")->element == String("\x01\n\x80\xff"));
}

void ReaderTest::appendsToTheObject()
{
    Object oDocument = readText(R"({"a":1})");
    std::istringstream oMore(R"({"b":2})");
    Reader::Read(oDocument, oMore);
    QCOMPARE(writeText(oDocument), std::string(R"({"a" : 1,"b" : 2})"));
    std::istringstream oTaken(R"({"c":3,"a":4})");
    QVERIFY_EXCEPTION_THROWN(Reader::Read(oDocument, oTaken), Reader::ParseException);
    QVERIFY(oDocument.Find("a")->element == Number(1) && oDocument.Size() == 3);
}

void ReaderTest::numbers()
{
    const Object oDocument =
        readText("{\"n\":[0,-0,007,1.,-.5,1E+2,1e-2,1e999,-1e999,1e-999,-1e-999,4.9e-324,0.1]}");
    const double dMax = std::numeric_limits<double>::max();
    const double dMin = std::numeric_limits<double>::denorm_min();
    Array oExpected;
    for (const double dNumber : {0.0, 0.0, 7.0, 1.0, -0.5, 100.0, 0.01, dMax, -dMax, 0.0, 0.0, dMin, 0.1}) {
        oExpected.Insert(Number(dNumber));
    }
    QVERIFY(oDocument.Begin()->element == oExpected);
}

void ReaderTest::outcomes_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("expected");
    const QJsonArray table = readTable(QFINDTESTDATA("outcomes.json"));
    QVERIFY(!table.isEmpty());
    for (const QJsonValue& row : table) {
        const QString text = row["text"].toString();
        QTest::newRow(text.toLatin1().toPercentEncoding("{}[],:\"\\ ")) << text << row["expected"].toString();
    }
}

void ReaderTest::outcomes()
{
    QFETCH(QString, text);
    QFETCH(QString, expected);
    QCOMPARE(outcome(text.toLatin1().toStdString()), expected);
}

void ReaderTest::chunkBordersDoNotShow()
{
    const std::string sText = "{\"name\" : [\"a\\n\nb\" ,\n -12.5e1 , true ] ,\n\t\"x\" : null }  ";
    const std::string sWritten = writeText(readText(sText));
    for (int nShift = 4020; nShift < 4100; ++nShift) {
        const std::string sBlanks(std::size_t(nShift), ' ');
        QCOMPARE(writeText(readText(sBlanks + sText)), sWritten);
        QCOMPARE(outcome(sBlanks + sText + '~'),
                 QStringLiteral("scan: Unexpected character in stream: ~ at 3:15@%1")
                     .arg(nShift + int(sText.size())));
        const Object oDocument = readText(R"({")" + std::string(std::size_t(nShift), 'n') + R"(\t":""})");
        QCOMPARE(oDocument.Begin()->name, std::string(std::size_t(nShift), 'n') + '\t');
    }
}

void ReaderTest::largeAndHostileTexts_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char* szName, const std::string& sText, const QString& expected) {
        QTest::newRow(szName) << QByteArray::fromStdString(sText) << expected;
    };
    const QString nesting = QStringLiteral("parse: Nesting deeper than 1024 levels at ");
    row("brackets", repeated("[", 100000), "parse: Unexpected token: [ at 0:0@0 to 0:1@1");
    row("brackets in an object", "{\"a\":" + repeated("[", 100000), nesting + "0:1028@1028 to 0:1029@1029");
    row("objects", repeated("{\"a\":", 100000), nesting + "0:5120@5120 to 0:5121@5121");
    row("1024 levels", repeated("{\"a\":", 1023) + "[]" + repeated("}", 1023), "document");
    row("1025 levels", repeated("{\"a\":", 1024) + "[]" + repeated("}", 1024),
        nesting + "0:5120@5120 to 0:5121@5121");
    row("many at the same level", "{\"a\":[" + repeated("[{}],", 60000) + "[]]}", "document");
    row("long string", R"({"a":")" + repeated("x", 10000000) + R"("})", "document");
    row("long escapes", R"({"a":")" + repeated("\\n", 1000000) + R"("})", "document");
    row("long number", "{\"a\":" + std::string(1000000, '9') + "}", "document");
    row("long malformed number", "{\"a\":-" + std::string(1000000, '-') + "}",
        QString::fromLatin1(
            "parse: Unexpected character in NUMBER token: \xff at 0:5@5 to 0:1000006@1000006"));
}

void ReaderTest::largeAndHostileTexts()
{
    QFETCH(QByteArray, text);
    QFETCH(QString, expected);
    QCOMPARE(outcome(text.toStdString()), expected);
}

void ReaderTest::randomBytesNeverCrash()
{
    std::mt19937 oGenerator(1);
    std::string sBytes(5000000, ' ');
    std::generate(sBytes.begin(), sBytes.end(), [&oGenerator] { return static_cast<char>(oGenerator()); });
    QVERIFY(outcome(sBytes).startsWith("scan: "));
    // Bytes that make tokens get further.
    const std::string sTokenBytes = R"({}[],:"\ -1.e""ab{[::)";
    for (int nRound = 0; nRound < 2000; ++nRound) {
        std::string sText = "{";
        for (int n = 0; n < 40; ++n) {
            sText += sTokenBytes[oGenerator() % sTokenBytes.size()];
        }
        outcome(sText);
    }
}

void ReaderTest::findsDuplicatesAmongMany()
{
    for (const int nMembers : {2, 20, 24, 25, 26, 30, 300, 200000}) {
        std::string sText = "{";
        for (int n = 0; n < nMembers; ++n) {
            sText += "\"name" + std::to_string(n) + "\":" + std::to_string(n) + ",";
        }
        const Object oDocument = readText(sText + "\"last\":null}");
        QCOMPARE(oDocument.Size(), std::size_t(nMembers + 1));
        const std::string sTaken = "name" + std::to_string(nMembers / 2);
        QVERIFY(outcome(sText.append(1, '"').append(sTaken).append("\":1}"))
                    .startsWith("parse: Duplicate object member token: " + QString::fromStdString(sTaken) +
                                " at 0:"));
    }
}

void ReaderTest::readsWhatWasWritten()
{
    RandomElement oRandom;
    for (int n = 0; n < 100; ++n) {
        const Object oDocument = oRandom.MakeObject(3);
        const std::string sText = writeText(oDocument);
        const Object oRead = readText(sText);
        QVERIFY(oRead == oDocument);
        QCOMPARE(writeText(oRead), sText);
    }
}

void ReaderTest::unreadableStreamIsEmpty()
{
    std::istringstream oFailed("{}");
    oFailed.setstate(std::ios_base::failbit);
    Object oDocument;
    QVERIFY_EXCEPTION_THROWN(Reader::Read(oDocument, oFailed), Reader::ParseException);
}

QTEST_APPLESS_MAIN(ReaderTest)
#include "tst_reader.moc"
