#include "support/panelprocess.h"

#include <QTest>

namespace {

const QString s_strProgram = "exec " PANEL_PROGRAM;
const QString s_strReadPipe = "timeout 3 cat /tmp/tarnixUI";
const QByteArray s_oNotice = "paintEvent finished";
const QByteArray s_oWritten = "writeToNamedPipe Written message to named pipe successfully\n";

// Makes a system call on the pipe fail. LeakSanitizer does not work under a tracer.
const QString s_strTrace = "ASAN_OPTIONS=detect_leaks=0; export ASAN_OPTIONS; "
                           "exec strace -o /dev/null -P /tmp/tarnixUI -e inject=%1 " PANEL_PROGRAM;

// Runs a shell script; returns what it writes.
QByteArray shell(const QString& strScript)
{
    ChildProcess oShell;
    oShell.start("bash", {"-c", strScript});
    oShell.waitForFinished();
    return oShell.readAll();
}

} // namespace

/** The start-up notice and the configuration application. */
class TestOutside : public QObject
{
    Q_OBJECT

private slots:
    void init() { shell("rm -rf /tmp/tarnixUI; printf precious >/tmp/victim"); }

    // The first write fails because its reader has gone, or because the pipe is full.
    void pipeReachesLateReaderOnce_data()
    {
        QTest::addColumn<QString>("program");
        QTest::newRow("one reader") << s_strProgram;
        QTest::newRow("one that leaves") << s_strTrace.arg("write:error=EPIPE:signal=SIGPIPE:when=1");
        QTest::newRow("full") << s_strTrace.arg("write:error=EAGAIN:when=1");
    }

    void pipeReachesLateReaderOnce()
    {
        QFETCH(QString, program);
        PanelProcess oPanel({}, program);
        QVERIFY(oPanel.start());
        QTRY_COMPARE(shell("stat -c %F /tmp/tarnixUI"), "fifo\n");
        oPanel.send("v1.2\n"); // works while nobody reads
        QCOMPARE(oPanel.waitForText("targetVersionForm_Label", "1.2"), "1.2");
        if (program != s_strProgram) {
            QCOMPARE(shell(s_strReadPipe), "");
            QVERIFY(program.contains("EAGAIN") ||
                    oPanel.waitForLog("Failed to write to named pipe Broken pipe\n"));
        }
        QCOMPARE(shell(s_strReadPipe), s_oNotice);
        QVERIFY(oPanel.waitForLog(s_oWritten));
        ChildProcess oReader;
        QCOMPARE(oReader.startAndReadLine("bash", {"-c", "exec 3<>/tmp/tarnixUI; echo open; exec cat <&3"}),
                 "open");
        oPanel.send("n5\nv1.3\n"); // paints again
        QCOMPARE(oPanel.waitForText("targetVersionForm_Label", "1.3"), "1.3");
        QVERIFY(oPanel.waitForTicks()); // longer than it waits before it tries again
        QCOMPARE(oReader.readAll(), "");
        QCOMPARE(oPanel.quit(), 0);
    }

    void pipePathIsTaken_data()
    {
        QTest::addColumn<QString>("setup");
        QTest::addColumn<QByteArray>("log");
        const QByteArray oText = "Failed to open named pipe for writing 2 ";
        QTest::newRow("socket") << "python3 -c 'import socket; socket.socket(1).bind(\"/tmp/tarnixUI\")'"
                                << oText + "No such device or address\n";
        QTest::newRow("link") << "ln -s /tmp/victim /tmp/tarnixUI"
                              << oText + "Too many levels of symbolic links\n";
        QTest::newRow("no room")
            << "" << QByteArray("Failed to create named pipe for writing 1 No space left on device\n");
        QTest::newRow("file") << "echo ......................end >/tmp/tarnixUI" << s_oWritten;
    }

    void pipePathIsTaken()
    {
        QFETCH(QString, setup);
        QFETCH(QByteArray, log);
        shell(setup);
        PanelProcess oPanel({}, setup.isEmpty() ? s_strTrace.arg("/mknod:error=ENOSPC") : s_strProgram);
        QVERIFY(oPanel.start());
        QVERIFY2(oPanel.waitForLog(log), oPanel.log());
        QVERIFY(oPanel.waitForTicks());
        QCOMPARE(oPanel.log().count("named pipe"), 1);
        QCOMPARE(shell("cat /tmp/victim"), QByteArray("precious"));
        if (log == s_oWritten) {
            QCOMPARE(shell("cat /tmp/tarnixUI"), s_oNotice + "...end\n");
        }
    }

    void configurationApplication()
    {
        const VirtualDisplay oDisplay({800, 480});
        PanelProcess oPanel(oDisplay.name(), s_strProgram + " 7</dev/zero"); // must not be inherited
        QVERIFY(oPanel.start());
        const QPoint oButton = oPanel.widget("toolButton").rect().center();
        QVERIFY(oDisplay.tap(oButton)); // without the application nothing happens

        // Each tap starts an application, which reports its environment and outlives the panel.
        shell("cat >/usr/bin/kadconfig-app <<'END'; chmod +x /usr/bin/kadconfig-app\n"
              "#!/bin/bash\necho \"[$QTDIR][$QT_PLUGIN_PATH][$LD_LIBRARY_PATH]\" "
              "$(readlink /proc/$$/fd/{0,1,2,7}) >>/tmp/report\nexec sleep 1000\nEND");
        QVERIFY(oDisplay.tap(oButton));
        QVERIFY(oDisplay.tap(oButton));
        QTRY_COMPARE(shell("cat /tmp/report"),
                     QByteArray("[][][] /dev/null /dev/null /dev/null\n").repeated(2));
        QCOMPARE(oPanel.quit(), 0);
        QCOMPARE(oPanel.output(), "First message\n> Good bye!\n");
    }
};

QTEST_GUILESS_MAIN(TestOutside)
#include "tst_outside.moc"
