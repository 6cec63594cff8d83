#include "support/difference.h"
#include "support/panelprocess.h"

#include <QDateTime>
#include <QFile>
#include <QTest>

namespace {

const QByteArray s_oOutput = "First message\n> Good bye!\n";
const QByteArray s_oUnknown = "setPLCStatus: ui element not found idx: ";

// Returns the log from the first unknown application on.
QByteArray unknownIn(const QByteArray& oLog)
{
    return oLog.contains(s_oUnknown) ? oLog.mid(oLog.indexOf(s_oUnknown)) : QByteArray();
}

} // namespace

/** The command channel of the real program. */
class TestCommands : public QObject
{
    Q_OBJECT

private slots:
    void ends_data()
    {
        QTest::addColumn<QString>("streams");
        QTest::addColumn<QByteArray>("input");
        QTest::newRow("nothing after quit") << "" << QByteArray("d500\nquit\na077x\nquit\n");
        QTest::newRow("incomplete line") << "" << QByteArray("v1\na077Ma");
        QTest::newRow("incomplete quit") << "" << QByteArray("quit");
        QTest::newRow("closed input") << " <&-" << QByteArray();
    }

    void ends()
    {
        QFETCH(QString, streams);
        QFETCH(QByteArray, input);
        PanelProcess oPanel({}, "exec " PANEL_PROGRAM + streams);
        oPanel.process().start();
        oPanel.send(input);
        QVERIFY(oPanel.process().endsWell());
        QCOMPARE(oPanel.output(), s_oOutput);
        QCOMPARE(unknownIn(oPanel.log()), QByteArray());
    }

    void firstTexts()
    {
        PanelProcess oPanel;
        QVERIFY(oPanel.start());
        QStringList oTexts;
        const QList<sWidget> oWidgets = oPanel.widgets();
        for (const sWidget& oWidget : oWidgets) {
            oTexts += oWidget.isVisibleLabel() ? QStringList(oWidget.text()) : QStringList();
        }
        oTexts.sort();
        QCOMPARE(oTexts.join('|'),
                 "||AppName|Application Name:|Device Type:|No TARNIX Vistrel Loaded|PLC Status:|"
                 "PLCStatus|System Date:|System Settings|System Time:|SystemDate|SystemTime|"
                 "TargVer|Target Version:");
        QTRY_VERIFY(oPanel.widget("systemTimeForm_Label").text() != "SystemTime");
        const QString strTime = oPanel.widget("systemTimeForm_Label").text();
        const QString strNow = oPanel.widget("systemDateForm_Label").text() + strTime;
        const QDateTime oNow = QDateTime::fromString(strNow, "dd-MM-yyyyHH:mm:ss");
        QVERIFY2(oNow.isValid() && qAbs(oNow.secsTo(QDateTime::currentDateTime())) < 60, qPrintable(strNow));
    }

    void showsText_data()
    {
        QTest::addColumn<QString>("label");
        QTest::addColumn<QByteArray>("lines");
        QTest::addColumn<QString>("text");
        const QByteArray oLongest(65535, 'x');
        QTest::newRow("ident") << "identNoForm_Label" << QByteArray("i4711\n") << "";
        QTest::newRow("unchanged") << "targetVersionForm_Label" << QByteArray("v  1.2 \r\n") << "  1.2 \r";
        QTest::newRow("NUL") << "targetVersionForm_Label" << QByteArray("vab\0cd\n", 7) << "ab";
        QTest::newRow("too long") << "targetVersionForm_Label" << 'v' + oLongest + "\U0001F600\n"
                                  << QString(oLongest);
        QTest::newRow("UTF-8") << "appnameForm_Label" << QByteArray("a000Förder 泵\n") << "Förder 泵";
        QTest::newRow("none") << "appnameForm_Label" << QByteArray("A0001\nquit \nQuit\n\nquit\r\na0002\n")
                              << "2";
        QTest::newRow("no number is 0") << "plcStatusForm_Label" << QByteArray("s1Run\n") << "n";
    }

    void showsText()
    {
        QFETCH(QString, label);
        QFETCH(QByteArray, lines);
        QFETCH(QString, text);
        PanelProcess oPanel;
        QVERIFY(oPanel.start());
        oPanel.send(lines.left(lines.size() / 2));
        QVERIFY(!oPanel.widgets().isEmpty()); // does not wait for the rest of the line
        oPanel.send(lines.mid(lines.size() / 2));
        QCOMPARE(oPanel.waitForText(label, text), text);
        QCOMPARE(oPanel.quit(), 0);
        QCOMPARE(oPanel.output(), s_oOutput);
    }

    void applicationRows_data()
    {
        QTest::addColumn<QByteArray>("lines");
        QTest::addColumn<QString>("shown"); // of each row the captions, then status and name
        QTest::addColumn<QByteArray>("log");
        const QString strEmpty = "PLC Status:|Application Name:||";
        const QString strTwo = strEmpty + "|PLC Status:|Application Name:|Run|One";
        const QByteArray oThree = s_oUnknown + "3  size:  3\n" + s_oUnknown + "-1  size:  3\n";
        const QByteArray oMost = s_oUnknown + "-99  size:  1000\n";
        QTest::newRow("off by one") << QByteArray("n3\na001One\ns001Run\n") << strTwo << QByteArray();
        QTest::newRow("hidden") << QByteArray("n4\na003x\ns-01x\nn2\n") << strEmpty << oThree;
        QTest::newRow("kept") << QByteArray("n3\na001One\ns001Run\nn1\nn3\n") << strTwo << QByteArray();
        QTest::newRow("below 1") << QByteArray("n2\nn0\nnx\nn-3\n") << strEmpty << QByteArray();
        QTest::newRow("too many") << QByteArray("n2147483647\ns999x\ns-99x\nn1\n") << "" << oMost;
    }

    void applicationRows()
    {
        QFETCH(QByteArray, lines);
        PanelProcess oPanel;
        QVERIFY(oPanel.start());
        oPanel.send(lines + "vdone\n");
        QTRY_COMPARE_WITH_TIMEOUT(oPanel.widget("targetVersionForm_Label").text(), QString("done"), 30000);
        QTEST(oPanel.namelessTexts().join('|'), "shown");
        QTEST(unknownIn(oPanel.log()), "log");
    }

    void floodStaysInOrderAndLeavesTheLoopFree()
    {
        QByteArray oFlood = "v" + QByteArray(5000000, 'v') + "\nd" + QByteArray(4000000, 'x') + '\n';
        QByteArray oExpected;
        for (int i = 0; i < 100000; ++i) {
            const QByteArray oIndex = QByteArray::number(i % 900 + 100);
            oFlood += "s" + oIndex + "x\n";
            oExpected += s_oUnknown + oIndex + "  size:  0\n";
        }
        oFlood += QByteArray("i1.2\n").repeated(5000000);
        QFile oFile("/tmp/flood");
        QVERIFY(oFile.open(QIODevice::WriteOnly));
        QCOMPARE(oFile.write(oFlood), oFlood.size());
        PanelProcess oPanel({}, "exec " PANEL_PROGRAM " </tmp/flood");
        QVERIFY(oPanel.start());
        QVERIFY(!oPanel.widgets().isEmpty());
        QCOMPARE(oPanel.output(), "First message\n> "); // the flood goes on
        QTRY_COMPARE_WITH_TIMEOUT(difference(unknownIn(oPanel.log()), oExpected), QByteArray(), 30000);
        QVERIFY(oPanel.log().contains("Command line longer than 4194304 bytes dropped\n"));
        QCOMPARE(oPanel.widget("targetVersionForm_Label").text(), "TargVer");
        QCOMPARE(oPanel.widget("deviceTypeForm_Label").text().left(3), "xxx");
    }
};

QTEST_GUILESS_MAIN(TestCommands)
#include "tst_commands.moc"
