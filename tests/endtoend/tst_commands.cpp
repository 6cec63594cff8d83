#include "support/panelprocess.h"

#include <QRegularExpression>
#include <QTest>
#include <QTime>
#include <unistd.h>

namespace {

const QByteArray s_oGreeting = "First message\n> ";
const QByteArray s_oFarewell = "Good bye!\n";

} // namespace

class TestCommands : public QObject
{
    Q_OBJECT

private slots:
    void endOfInput_data();
    void endOfInput();
    void closedStreams();
    void textsAtStart();
    void lines_data();
    void lines();
    void halfLines();
    void nothingAfterQuit();
    void applicationRows();
    void hugeCount();
    void floodStaysInOrderAndAnswers();
    void longLine();
};

void TestCommands::endOfInput_data()
{
    QTest::addColumn<QByteArray>("input");
    QTest::newRow("commands and quit") << QByteArray("d500/600\nv1.2\nn2\na000Main\ns000Running\nquit\n");
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("half a line") << QByteArray("v1\na000Ma");
    QTest::newRow("half a quit") << QByteArray("quit");
}

void TestCommands::endOfInput()
{
    QFETCH(QByteArray, input);
    PanelProcess oPanel;
    oPanel.process().start();
    oPanel.send(input);
    oPanel.process().closeWriteChannel();
    QVERIFY(oPanel.process().waitForFinished());
    QCOMPARE(oPanel.process().exitStatus(), QProcess::NormalExit);
    QCOMPARE(oPanel.process().exitCode(), 0);
    QCOMPARE(oPanel.output(), s_oGreeting + s_oFarewell);
}

// The numbers of closed streams must not fall to a connection of the program's own.
void TestCommands::closedStreams()
{
    PanelProcess oPanel;
    oPanel.process().setProgram("/bin/sh");
    oPanel.process().setArguments({"-c", "exec " PANEL_PROGRAM " <&- >&-"});
    oPanel.process().start();
    QVERIFY(oPanel.process().waitForFinished());
    QCOMPARE(oPanel.process().exitCode(), 0);

    // A runtime that has closed its end of the output still gets the program to end cleanly.
    PanelProcess oUnheard;
    QVERIFY(oUnheard.start());
    oUnheard.process().closeReadChannel(QProcess::StandardOutput);
    QCOMPARE(oUnheard.quit(), 0);
}

void TestCommands::textsAtStart()
{
    PanelProcess oPanel;
    QVERIFY(oPanel.start());
    QStringList oTexts;
    const QList<sWidget> oWidgets = oPanel.widgets();
    for (const sWidget& oWidget : oWidgets) {
        if (oWidget.isVisibleLabel() && oWidget.name() != "logo") {
            oTexts.append(oWidget.text());
        }
    }
    oTexts.sort();
    QCOMPARE(oTexts.join('|'),
             QString("|AppName|Application Name:|Device Type:|No TARNIX Vistrel Loaded|PLC Status:|"
                     "PLCStatus|System Date:|System Settings|System Time:|SystemDate|SystemTime|"
                     "TargVer|Target Version:"));

    // From the first second on the clock shows the date and time of now.
    QVERIFY(
        QTest::qWaitFor([&] { return oPanel.widget("systemTimeForm_Label").text() != "SystemTime"; }, 3000));
    const QString strTime = oPanel.widget("systemTimeForm_Label").text();
    QCOMPARE(QTime::fromString(strTime, "HH:mm:ss").toString("HH:mm:ss"), strTime);
    const QString strDate = oPanel.widget("systemDateForm_Label").text();
    QCOMPARE(QDate::fromString(strDate, "dd-MM-yyyy").toString("dd-MM-yyyy"), strDate);
}

void TestCommands::lines_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QString>("label");
    QTest::addColumn<QString>("text");
    const struct
    {
        const char* szWhat;
        QByteArray oLine;
        const char* szLabel;
        const char* szText;
    } oRows[] = {
        {"device type", "dPLC 500/600", "deviceTypeForm_Label", "PLC 500/600"},
        {"no device type", "d", "deviceTypeForm_Label", ""},
        {"ident is blanked", "i4711", "identNoForm_Label", ""},
        {"as it stands", "v  1.2\r", "targetVersionForm_Label", "  1.2\r"},
        {"markup is text", "v<b>1</b>", "targetVersionForm_Label", "<b>1</b>"},
        {"UTF-8", "a000F\xC3\xB6rder \xE6\xB3\xB5", "appnameForm_Label", "F\xC3\xB6rder \xE6\xB3\xB5"},
        {"stops at NUL", QByteArray("vab\0cd", 6), "targetVersionForm_Label", "ab"},
        {"index is no number", "s1Run", "plcStatusForm_Label", "n"},
        {"index with blanks", "s 0 Run", "plcStatusForm_Label", "Run"},
        {"no text", "a", "appnameForm_Label", ""},
        {"unknown prefix", "xyz", "targetVersionForm_Label", "TargVer"},
        {"other case", "V9", "targetVersionForm_Label", "TargVer"},
        {"no quit", "quit \nQuit\nquit2\n\nquit\r\nv7", "targetVersionForm_Label", "7"}};
    for (const auto& oRow : oRows) {
        QTest::newRow(oRow.szWhat) << oRow.oLine << QString(oRow.szLabel) << QString::fromUtf8(oRow.szText);
    }
}

void TestCommands::lines()
{
    QFETCH(QByteArray, line);
    QFETCH(QString, label);
    QFETCH(QString, text);
    PanelProcess oPanel;
    QVERIFY(oPanel.start());
    oPanel.send("dbefore\n" + line + "\nn3\ns001done\n");
    QVERIFY(QTest::qWaitFor([&] {
        const QList<sWidget> oWidgets = oPanel.widgets();
        return std::any_of(oWidgets.begin(), oWidgets.end(),
                           [](const sWidget& o) { return o.text() == "done"; });
    }));
    QCOMPARE(oPanel.widget(label).text(), text);
    QCOMPARE(oPanel.quit(), 0);
    QCOMPARE(oPanel.output(), s_oGreeting + s_oFarewell);
}

void TestCommands::halfLines()
{
    PanelProcess oPanel;
    QVERIFY(oPanel.start());
    oPanel.send("v1\nv2");
    QCOMPARE(oPanel.waitForText("targetVersionForm_Label", "1"), QString("1"));
    // The panel neither waits for the rest nor carries out what it has.
    QVERIFY(!oPanel.widgets().isEmpty());
    oPanel.send("3\n");
    QCOMPARE(oPanel.waitForText("targetVersionForm_Label", "23"), QString("23"));
}

void TestCommands::nothingAfterQuit()
{
    PanelProcess oPanel;
    QVERIFY(oPanel.start());
    oPanel.send("quit\na077x\nquit\n");
    QCOMPARE(oPanel.quit(), 0);
    QCOMPARE(oPanel.output(), s_oGreeting + s_oFarewell);
    QVERIFY2(!oPanel.log().contains("not found"), oPanel.log());
}

void TestCommands::applicationRows()
{
    PanelProcess oPanel;
    QVERIFY(oPanel.start());
    const auto fnVisible = [&] {
        QStringList oTexts;
        const QList<sWidget> oWidgets = oPanel.widgets();
        for (const sWidget& oWidget : oWidgets) {
            if (oWidget.isVisibleLabel() && oWidget.name().isEmpty()) {
                oTexts.append(oWidget.text());
            }
        }
        return oTexts.join('|');
    };
    const QString strRow = "PLC Status:|Application Name:|%1|%2";
    oPanel.send("n5\na001One\ns001Run\na004Four\ns-01Low\na003Three\ndstep1\n");
    QCOMPARE(oPanel.waitForText("deviceTypeForm_Label", "step1"), QString("step1"));
    // The row with key 0 cannot be reached, the last application has no row: both setters say so with one
    // text.
    QCOMPARE(fnVisible(), (QStringList{strRow.arg("", ""), strRow.arg("Run", "One"), strRow.arg("", ""),
                                       strRow.arg("", "Three")})
                              .join('|'));
    QVERIFY(oPanel.log().contains("setPLCStatus: ui element not found idx: 4  size:  4\n"
                                  "setPLCStatus: ui element not found idx: -1  size:  4\n"));

    oPanel.send("n0\nnx\nn-3\nn3\ndstep2\n");
    QCOMPARE(oPanel.waitForText("deviceTypeForm_Label", "step2"), QString("step2"));
    QCOMPARE(fnVisible(), (QStringList{strRow.arg("", ""), strRow.arg("Run", "One")}).join('|'));

    oPanel.send("n1\ndstep3\n");
    QCOMPARE(oPanel.waitForText("deviceTypeForm_Label", "step3"), QString("step3"));
    QCOMPARE(fnVisible(), QString());

    oPanel.send("n4\ndstep4\n");
    QCOMPARE(oPanel.waitForText("deviceTypeForm_Label", "step4"), QString("step4"));
    QCOMPARE(fnVisible(),
             (QStringList{strRow.arg("", ""), strRow.arg("Run", "One"), strRow.arg("", "")}).join('|'));
}

void TestCommands::hugeCount()
{
    PanelProcess oPanel;
    QVERIFY(oPanel.start());
    oPanel.send("n2147483647\ns998last\ns999none\ndend\n");
    QCOMPARE(oPanel.waitForText("deviceTypeForm_Label", "end"), QString("end"));
    QCOMPARE(oPanel.log().count("not found"), 1);
    QVERIFY(oPanel.waitForLog("setPLCStatus: ui element not found idx: 999  size:  999\n"));
}

void TestCommands::floodStaysInOrderAndAnswers()
{
    PanelProcess oPanel;
    QVERIFY(oPanel.start());
    QByteArray oFlood;
    for (int i = 0; i < 100000; ++i) {
        oFlood += "s" + QByteArray::number(i % 900 + 100) + "x\nv" + QByteArray::number(i) + "\n";
    }
    oPanel.process().write(oFlood + "dend\n");
    // While the lines come in, the event loop answers: what it shows only ever counts up.
    int nLast = -1;
    int nAnswers = 0;
    while (oPanel.widget("deviceTypeForm_Label").text() != "end") {
        oPanel.process().waitForBytesWritten(1);
        bool bNumber = false;
        const int nShown = oPanel.widget("targetVersionForm_Label").text().toInt(&bNumber);
        QVERIFY(!bNumber || nShown >= nLast);
        nLast = bNumber ? nShown : nLast;
        ++nAnswers;
    }
    QCOMPARE(oPanel.widget("targetVersionForm_Label").text(), QString("99999"));
    QVERIFY2(nAnswers > 3, "the panel did not answer while the lines came in");

    // Each command in a flood was carried out, and in its order.
    QRegularExpressionMatchIterator it =
        QRegularExpression("idx: (\\d+)  size").globalMatch(QString::fromLatin1(oPanel.log()));
    int nCount = 0;
    for (; it.hasNext(); ++nCount) {
        QCOMPARE(it.next().captured(1).toInt(), nCount % 900 + 100);
    }
    QCOMPARE(nCount, 100000);
}

void TestCommands::longLine()
{
    PanelProcess oPanel;
    QVERIFY(oPanel.start());
    oPanel.send("x" + QByteArray(20 * 1024 * 1024, 'y') + "\nvafter\n");
    QCOMPARE(oPanel.waitForText("targetVersionForm_Label", "after"), QString("after"));
}

QTEST_GUILESS_MAIN(TestCommands)
#include "tst_commands.moc"
