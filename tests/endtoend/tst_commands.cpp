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

QByteArray unknownIndexes(const PanelProcess& oPanel)
{
    const QByteArray oLog = oPanel.log();
    return oLog.mid(oLog.indexOf("setPLCStatus"));
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
        // The numbers of closed streams must not fall to a connection of the program's own.
        PanelProcess oClosed({}, "exec " PANEL_PROGRAM " <&- >&-");
        oClosed.process().start();
        QVERIFY(oClosed.process().endsWell());
        // A runtime that has closed its end of the output still gets the program to end cleanly.
        PanelProcess oUnheard;
        QVERIFY(oUnheard.start());
        oUnheard.process().closeReadChannel(QProcess::StandardOutput);
        QCOMPARE(oUnheard.quit(), 0);
    }

    void texts()
    {
        PanelProcess oPanel;
        QVERIFY(oPanel.start());
        QStringList oTexts;
        const QList<sWidget> oWidgets = oPanel.widgets();
        for (const sWidget& oWidget : oWidgets) {
            if (oWidget.isVisibleLabel()) {
                oTexts.append(oWidget.text());
            }
        }
        oTexts.sort();
        QCOMPARE(oTexts.join('|'),
                 QString("||AppName|Application Name:|Device Type:|No TARNIX Vistrel Loaded|PLC Status:|"
                         "PLCStatus|System Date:|System Settings|System Time:|SystemDate|SystemTime|"
                         "TargVer|Target Version:"));

        // From the first second on the clock shows the date and time of now.
        QTRY_VERIFY(oPanel.widget("systemTimeForm_Label").text() != "SystemTime");
        const QString strNow =
            oPanel.widget("systemDateForm_Label").text() + oPanel.widget("systemTimeForm_Label").text();
        const QDateTime oNow = QDateTime::fromString(strNow, "dd-MM-yyyyHH:mm:ss");
        QVERIFY2(oNow.isValid() && qAbs(oNow.secsTo(QDateTime::currentDateTime())) < 5, qPrintable(strNow));

        for (const QStringList& oStep : {
                 QStringList{"i4711\ndPLC 500/600\n", "deviceTypeForm_Label", "PLC 500/600"},
                 QStringList{"", "identNoForm_Label", ""},
                 QStringList{"xyz\nV9\nquit \nQuit\nquit2\nquit\r\n\nd\n", "deviceTypeForm_Label", ""},
                 QStringList{"", "targetVersionForm_Label", "TargVer"},
                 QStringList{"v  1.2\r\n", "targetVersionForm_Label", "  1.2\r"},
                 QStringList{QString("vab%1cd\n").arg(QChar()), "targetVersionForm_Label", "ab"},
                 QStringList{"v1\nv2", "targetVersionForm_Label", "1"},
                 QStringList{"3\n", "targetVersionForm_Label", "23"},
                 QStringList{"a000Förder 泵\n", "appnameForm_Label", "Förder 泵"},
                 QStringList{"s1Run\n", "plcStatusForm_Label", "n"}, // no number counts as 0
                 QStringList{"s 0 Run\n", "plcStatusForm_Label", "Run"},
                 QStringList{"a\n", "appnameForm_Label", ""},
                 QStringList{"s\n", "plcStatusForm_Label", ""},
             }) {
            oPanel.send(oStep[0].toUtf8());
            QCOMPARE(oPanel.waitForText(oStep[1], oStep[2]), oStep[2]);
        }
        QCOMPARE(oPanel.quit(), 0);
        QCOMPARE(oPanel.output(), s_oOutput);
    }

    void applicationRowsAreOffByOne()
    {
        PanelProcess oPanel;
        QVERIFY(oPanel.start());
        const QString strTwo = "PLC Status:|Application Name:|||PLC Status:|Application Name:|Run|One";
        const QString strThird = "|PLC Status:|Application Name:||";
        oPanel.send("n5\na001One\ns001Run\na004Four\ns-01Low\na003Three\n");
        QTRY_COMPARE(oPanel.namelessTexts().join('|'), strTwo + strThird + strThird + "Three");
        oPanel.send("n0\nnx\nn-3\nn3\n");
        QTRY_COMPARE(oPanel.namelessTexts().join('|'), strTwo);
        oPanel.send("n1\n");
        QTRY_COMPARE(oPanel.namelessTexts(), QStringList());
        oPanel.send("n4\n");
        QTRY_COMPARE(oPanel.namelessTexts().join('|'), strTwo + strThird);
        oPanel.send("n2147483647\ns999last\ns-99none\n");
        const QByteArray oUnknown = "setPLCStatus: ui element not found idx: ";
        const QByteArray oExpected =
            oUnknown + "4  size:  4\n" + oUnknown + "-1  size:  4\n" + oUnknown + "-99  size:  1000\n";
        QTRY_COMPARE_WITH_TIMEOUT(unknownIndexes(oPanel), oExpected, 30000); // 1000 rows, in the emulator too
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
        QCOMPARE(unknownIndexes(oPanel), oLog);
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
        PanelProcess oLongLine;
        QVERIFY(oLongLine.start());
        oLongLine.send("v" + QByteArray(5000000, 'x') + "\nd#next\n");
        QCOMPARE(oLongLine.waitForText("deviceTypeForm_Label", "#next"), QString("#next"));
        QCOMPARE(oLongLine.widget("targetVersionForm_Label").text(), QString("TargVer"));
        QCOMPARE(oLongLine.quit(), 0);
    }
};

QTEST_GUILESS_MAIN(TestCommands)
#include "tst_commands.moc"
