#include "jsontext.h"

#include <QtTest>

#include <fstream>

using namespace json;

namespace {

QString place(const Reader::Location& location)
{
    return QString::asprintf("%u:%u@%u", location.m_nLine, location.m_nLineOffset, location.m_nDocOffset);
}

// Returns what reading ends in: "document", or the kind of exception, its message and its places.
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

// Fails as the buffer of a file does that is a directory.
class BrokenBuffer : public std::streambuf
{
    int_type underflow() override { throw std::runtime_error("broken"); }
};

} // namespace

class ReaderTest : public QObject
{
    Q_OBJECT

private slots:
    void appendsToTheObject()
    {
        Object oDocument = readText(R"({"a":1})");
        std::istringstream oMore(R"({"b":2})");
        Reader::Read(oDocument, oMore);
        QCOMPARE(writeText(oDocument), std::string(R"({"a" : 1,"b" : 2})"));
        for (const char* szTaken : {R"({"c":3,"a":4})", R"({"a":[4)"}) {
            std::istringstream oTaken(szTaken);
            QVERIFY_EXCEPTION_THROWN(Reader::Read(oDocument, oTaken), Reader::ParseException);
        }
        QVERIFY(oDocument.Find("a")->element == Number(1) && oDocument.Size() == 3);
    }

    void outcomes_data()
    {
        QTest::addColumn<QJsonValue>("row");
        const QJsonArray table = readTable(QFINDTESTDATA("outcomes.json"));
        QVERIFY(!table.isEmpty());
        for (const QJsonValue& row : table) {
            const QString name = row["text"].toString() + row["repeated"].toString() + row["tail"].toString();
            QTest::newRow(name.toLatin1().toPercentEncoding("{}[],:\"\\ ")) << row;
        }
    }

    void outcomes()
    {
        QFETCH(QJsonValue, row);
        const int nTimes = row["times"].toInt();
        const QString text = row["text"].toString() + row["repeated"].toString().repeated(nTimes) +
                             row["tail"].toString() + row["closing"].toString().repeated(nTimes);
        QCOMPARE(outcome(text.toLatin1().toStdString()), row["expected"].toString());
    }

    void chunkBordersDoNotShow()
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

    void findsDuplicatesAmongMany()
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
                        .startsWith("parse: Duplicate object member token: " +
                                    QString::fromStdString(sTaken) + " at 0:"));
        }
    }

    void unreadableStreamIsEmpty()
    {
        std::istringstream oFailed("{}");
        oFailed.setstate(std::ios_base::badbit);
        std::ifstream oDirectory("/");
        BrokenBuffer oBuffer;
        std::istream oBroken(&oBuffer);
        for (std::istream* pStream : std::initializer_list<std::istream*>{&oFailed, &oDirectory, &oBroken}) {
            Object oDocument;
            QVERIFY_EXCEPTION_THROWN(Reader::Read(oDocument, *pStream), Reader::ParseException);
            QVERIFY(pStream->bad());
        }
    }
};

QTEST_APPLESS_MAIN(ReaderTest)
#include "tst_reader.moc"
