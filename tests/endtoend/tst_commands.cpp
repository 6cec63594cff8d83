#include "support/panelprocess.h"

#include <QRegularExpression>
#include <QTest>
#include <QTime>
#include <unistd.h>

namespace {

const QByteArray s_oGreeting = "First message\n> ";
const QByteArray s_oFarewell = "Good bye!\n";

QString writeFile(const QByteArray& oContents)
{
    QFile oFile("/tmp/input");
    oFile.open(QIODevice::WriteOnly);
    oFile.write(oContents);
    return oFile.fileName();
}

} // namespace

class TestCommands : public QObject
{
    Q_OBJECT

private slots:
    void endOfInput_data()
    {
        QTest::addColumn<QByteArray>("input");
        QTest::newRow("commands and quit") << QByteArray("d500/600\nv1.2\nn2\na000Main\ns000Running\nquit\n");
        QTest::newRow("nothing") << QByteArray();
        QTest::newRow("half a line") << QByteArray("v1\na000Ma");
        QTest::newRow("half a quit") << QByteArray("quit");
    }

    void endOfInput()
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
    void closedStreams()
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

    void textsAtStart()
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
        QVERIFY(QTest::qWaitFor([&] { return oPanel.widget("systemTimeForm_Label").text() != "SystemTime"; },
                                3000));
        const QString strTime = oPanel.widget("systemTimeForm_Label").text();
        QCOMPARE(QTime::fromString(strTime, "HH:mm:ss").toString("HH:mm:ss"), strTime);
        const QString strDate = oPanel.widget("systemDateForm_Label").text();
        QCOMPARE(QDate::fromString(strDate, "dd-MM-yyyy").toString("dd-MM-yyyy"), strDate);
    }

    void scenarios_data()
    {
        QTest::addColumn<QStringList>("steps");
        QFile oFile(QFINDTESTDATA("scenarios.txt"));
        QVERIFY(oFile.open(QIODevice::ReadOnly));
        const QStringList oScenarios = QString::fromUtf8(oFile.readAll()).split("\n== ").mid(1);
        for (const QString& strScenario : oScenarios) {
            const QStringList oLines = strScenario.split('\n', Qt::SkipEmptyParts);
            QTest::newRow(qPrintable(oLines.first())) << QStringList(oLines.mid(1));
        }
    }

    void scenarios()
    {
        QFETCH(QStringList, steps);
        PanelProcess oPanel;
        QVERIFY(oPanel.start());
        QStringList oUnlogged;
        for (QString strStep : steps) {
            strStep.replace("\\n", "\n").replace("\\r", "\r").replace("\\0", QChar());
            const QString strVerb = strStep.section(' ', 0, 0);
            const QString strText = strStep.section(' ', 1);
            if (strVerb == "send") {
                oPanel.send(strText.toUtf8());
            } else if (strVerb == "shows") {
                const QString strShown = strText.section(' ', 1);
                QCOMPARE(oPanel.waitForText(strText.section(' ', 0, 0), strShown), strShown);
            } else if (strVerb == "rows") {
                QTRY_COMPARE(oPanel.namelessTexts().join('|'), strText);
            } else if (strVerb == "logs") {
                QVERIFY2(oPanel.waitForLog(strText.toUtf8()), oPanel.log());
            } else {
                QCOMPARE(strVerb, QString("unlogged"));
                oUnlogged.append(strText);
            }
        }
        QCOMPARE(oPanel.quit(), 0);
        QCOMPARE(oPanel.output(), s_oGreeting + s_oFarewell);
        for (const QString& strText : qAsConst(oUnlogged)) {
            QVERIFY2(!oPanel.log().contains(strText.toUtf8()), oPanel.log());
        }
    }

    void floodStaysInOrder()
    {
        QByteArray oFlood;
        for (int i = 0; i < 100000; ++i) {
            oFlood += "s" + QByteArray::number(i % 900 + 100) + "x\n";
        }
        PanelProcess oPanel;
        oPanel.process().setStandardInputFile(writeFile(oFlood));
        QVERIFY(oPanel.start());
        QVERIFY(oPanel.process().waitForFinished());
        QRegularExpressionMatchIterator it =
            QRegularExpression("idx: (\\d+)  size").globalMatch(QString::fromLatin1(oPanel.log()));
        int nCount = 0;
        for (; it.hasNext(); ++nCount) {
            QCOMPARE(it.next().captured(1).toInt(), nCount % 900 + 100);
        }
        QCOMPARE(nCount, 100000);
    }

    void floodLeavesTheLoopFree_data()
    {
        QTest::addColumn<QString>("input");
        QTest::newRow("lines") << writeFile(QByteArray("v1.2\n").repeated(5000000));
        QTest::newRow("a line without end") << QString("/dev/zero");
    }

    // The probe is answered by the event loop, long before the input is used up.
    void floodLeavesTheLoopFree()
    {
        QFETCH(QString, input);
        PanelProcess oPanel;
        oPanel.process().setStandardInputFile(input);
        QVERIFY(oPanel.start());
        QVERIFY(!oPanel.widgets().isEmpty());
        QVERIFY(input != "/dev/zero" || oPanel.waitForLog("Command line longer than 4194304 bytes dropped"));
        QVERIFY(!oPanel.output().contains(s_oFarewell));
    }
};

QTEST_GUILESS_MAIN(TestCommands)
#include "tst_commands.moc"
