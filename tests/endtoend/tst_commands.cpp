#include "support/panelprocess.h"

#include <QDateTime>
#include <QFile>
#include <QTest>

namespace {

const QByteArray s_oOutput = "First message\n> Good bye!\n";
const QString s_strFromFile = "exec " PANEL_PROGRAM " </tmp/input";

void writeInput(const QByteArray& oInput)
{
    QFile oFile("/tmp/input");
    oFile.open(QIODevice::WriteOnly);
    oFile.write(oInput);
}

} // namespace

class TestCommands : public QObject
{
    Q_OBJECT

private slots:
    // Neither half a line at the end nor what follows "quit" is carried out.
    void ends()
    {
        for (const char* szInput : {"d500/600\nv1.2\nquit\na077x\nquit\n", "", "v1\na077Ma", "quit"}) {
            PanelProcess oPanel;
            oPanel.process().start();
            oPanel.send(szInput);
            QVERIFY2(oPanel.process().endsWell(), szInput);
            QCOMPARE(oPanel.output(), s_oOutput);
            QVERIFY2(!oPanel.log().contains("idx: 77"), szInput);
        }
    }

    // The numbers of closed streams must not fall to a connection of the program's own.
    void closedStreams()
    {
        PanelProcess oPanel({}, "exec " PANEL_PROGRAM " <&- >&-");
        oPanel.process().start();
        QVERIFY(oPanel.process().endsWell());

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
        QTRY_VERIFY(oPanel.widget("systemTimeForm_Label").text() != "SystemTime");
        const QString strNow =
            oPanel.widget("systemDateForm_Label").text() + oPanel.widget("systemTimeForm_Label").text();
        const QDateTime oNow = QDateTime::fromString(strNow, "dd-MM-yyyyHH:mm:ss");
        QVERIFY2(qAbs(oNow.secsTo(QDateTime::currentDateTime())) < 5, qPrintable(strNow));
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
            } else {
                QCOMPARE(strVerb, QString("logs"));
                QTRY_COMPARE(oPanel.log().mid(oPanel.log().indexOf("setPLCStatus")), strText.toUtf8());
            }
        }
        QCOMPARE(oPanel.quit(), 0);
        QCOMPARE(oPanel.output(), s_oOutput);
    }

    void floodStaysInOrder()
    {
        QByteArray oFlood;
        QByteArray oLog;
        for (int i = 0; i < 100000; ++i) {
            const QByteArray oIndex = QByteArray::number(i % 900 + 100);
            oFlood += "s" + oIndex + "x\n";
            oLog += "setPLCStatus: ui element not found idx: " + oIndex + "  size:  0\n";
        }
        writeInput(oFlood);
        PanelProcess oPanel({}, s_strFromFile);
        oPanel.process().start();
        QVERIFY(oPanel.process().endsWell());
        QCOMPARE(oPanel.log().mid(oPanel.log().indexOf("setPLCStatus")), oLog);
    }

    // The probe is answered by the event loop, long before the input is used up.
    void floodLeavesTheLoopFree()
    {
        const QByteArray oLong = QByteArray(4000000, 'x') + '\n';
        writeInput("d" + oLong + "a000" + oLong + "s000" + oLong + QByteArray("v1.2\n").repeated(5000000));
        PanelProcess oLines({}, s_strFromFile);
        PanelProcess oEndlessLine({}, "exec " PANEL_PROGRAM " </dev/zero");
        for (PanelProcess* pPanel : {&oLines, &oEndlessLine}) {
            QVERIFY(pPanel->start());
            QVERIFY(!pPanel->widgets().isEmpty());
            QVERIFY(pPanel == &oLines ||
                    pPanel->waitForLog("Command line longer than 4194304 bytes dropped"));
            QVERIFY(!pPanel->output().contains("Good bye!"));
        }
    }
};

QTEST_GUILESS_MAIN(TestCommands)
#include "tst_commands.moc"
