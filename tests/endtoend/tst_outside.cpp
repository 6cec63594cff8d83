#include "support/panelprocess.h"

#include <QDir>
#include <QFile>
#include <QLocalServer>
#include <QTest>
#include <csignal>

namespace {

const QString s_strPipe = "/tmp/tarnixUI";
const QByteArray s_oMessage = "paintEvent finished";
const QByteArray s_oWritten = "writeToNamedPipe Written message to named pipe successfully\n";

// Makes a system call of the program on the pipe fail. A traced process cannot look for its leaks.
const QString s_strTrace = "ASAN_OPTIONS=detect_leaks=0; export ASAN_OPTIONS; "
                           "exec strace -o /dev/null -P /tmp/tarnixUI -e inject=%1 " PANEL_PROGRAM;

QByteArray contents(const QString& strPath)
{
    QFile oFile(strPath);
    return oFile.open(QIODevice::ReadOnly) ? oFile.readAll() : QByteArray();
}

bool write(const QString& strPath, const QByteArray& oBytes)
{
    QFile oFile(strPath);
    return oFile.open(QIODevice::WriteOnly) && oFile.write(oBytes) == oBytes.size();
}

QByteArray readPipe()
{
    ChildProcess oReader;
    oReader.start("timeout", {"3", "cat", s_strPipe});
    oReader.waitForFinished();
    return oReader.readAll();
}

} // namespace

/** What the program does to the world around it: the named pipe and the configuration application. */
class TestOutside : public QObject
{
    Q_OBJECT

private slots:
    void init() { QCOMPARE(QProcess::execute("rm", {"-rf", s_strPipe, "/tmp/victim"}), 0); }

    void pipeReachesLateReaderOnce()
    {
        PanelProcess oPanel;
        QVERIFY(oPanel.start());
        // While nobody reads, the panel works.
        QTRY_VERIFY(QFile::exists(s_strPipe));
        oPanel.send("v1.2\n");
        QCOMPARE(oPanel.waitForText("targetVersionForm_Label", "1.2"), QString("1.2"));
        QTest::qWait(1000);
        QVERIFY(!oPanel.log().contains(s_oWritten));

        QCOMPARE(readPipe(), s_oMessage);
        QVERIFY(oPanel.waitForLog(s_oWritten));
        // Neither more time nor more painting brings a second message.
        oPanel.send("n5\nv1.3\n");
        QCOMPARE(readPipe(), QByteArray());
        QCOMPARE(oPanel.quit(), 0);
    }

    // The first write finds that the reader has just gone.
    void pipeOutlivesReaderThatLeaves()
    {
        PanelProcess oPanel({}, s_strTrace.arg("write:error=EPIPE:signal=SIGPIPE:when=1"));
        QVERIFY(oPanel.start());
        QTRY_VERIFY(QFile::exists(s_strPipe));
        QCOMPARE(readPipe(), QByteArray());
        QVERIFY2(oPanel.waitForLog("Failed to write to named pipe Broken pipe\n"), oPanel.log());
        QCOMPARE(readPipe(), s_oMessage);
        QVERIFY(oPanel.waitForLog(s_oWritten));
    }

    void pipePathIsTaken_data()
    {
        QTest::addColumn<QByteArray>("log");
        const QByteArray oText = "Failed to open named pipe for writing 2 ";
        QTest::newRow("directory") << oText + "Is a directory\n";
        QTest::newRow("socket") << oText + "No such device or address\n";
        QTest::newRow("link") << oText + "Too many levels of symbolic links\n";
        QTest::newRow("file") << s_oWritten; // over the first 19 bytes
        QTest::newRow("full disk") << QByteArray(
            "Failed to create named pipe for writing 1 No space left on device\n");
    }

    void pipePathIsTaken()
    {
        QFETCH(QByteArray, log);
        const QByteArray oKind = QTest::currentDataTag();
        QLocalServer oServer;
        QVERIFY(write("/tmp/victim", "precious"));
        QVERIFY(oKind != "directory" || QDir().mkdir(s_strPipe));
        QVERIFY(oKind != "socket" || oServer.listen(s_strPipe));
        QVERIFY(oKind != "link" || QFile::link("/tmp/victim", s_strPipe));
        QVERIFY(oKind != "file" || write(s_strPipe, "0123456789012345678901234567890"));
        PanelProcess oPanel({}, oKind == "full disk" ? s_strTrace.arg("/mknod:error=ENOSPC")
                                                     : "exec " PANEL_PROGRAM);
        QVERIFY(oPanel.start());
        QVERIFY2(oPanel.waitForLog(log), oPanel.log());
        QTest::qWait(500); // it is not tried again
        QCOMPARE(oPanel.quit(), 0);
        QCOMPARE(oPanel.log().count("named pipe"), 1);
        QCOMPARE(contents("/tmp/victim"), QByteArray("precious"));
        QVERIFY(oKind != "file" || contents(s_strPipe) == s_oMessage + "901234567890");
    }

    void configurationApplication()
    {
        const Display oDisplay({800, 480});
        PanelProcess oPanel(oDisplay.name(), "exec " PANEL_PROGRAM " 7</dev/zero"); // must not be inherited
        QVERIFY(oPanel.start());
        const QPoint oButton = oPanel.widget("toolButton").rect().center();

        QVERIFY(oDisplay.tap(oButton)); // without the application nothing happens
        QTest::qWait(300);

        // The application tells what it got, then stays. Each tap starts one.
        QVERIFY(write("/usr/bin/kadconfig-app",
                      "#!/bin/bash\nstreams=$(readlink /proc/$$/fd/{0,1,2} /proc/$$/fd/7)\n"
                      "echo \"[$QTDIR][$QT_PLUGIN_PATH][$LD_LIBRARY_PATH] \"$streams >/tmp/app.$$\n"
                      "exec sleep 1000\n"));
        QFile::setPermissions("/usr/bin/kadconfig-app", QFile::ReadOwner | QFile::ExeOwner);
        QVERIFY(oDisplay.tap(oButton) && oDisplay.tap(oButton));
        const auto fnReports = [] { return QDir("/tmp").entryList({"app.*"}); };
        QTRY_COMPARE(fnReports().size(), 2);
        QTRY_COMPARE(contents("/tmp/" + fnReports().first()),
                     QByteArray("[][][] /dev/null /dev/null /dev/null\n"));

        // The panel ends, and with it its output, though the applications live on.
        QCOMPARE(oPanel.quit(), 0);
        QCOMPARE(oPanel.output(), QByteArray("First message\n> Good bye!\n"));
        for (const QString& strReport : fnReports()) {
            QCOMPARE(kill(strReport.section('.', 1).toInt(), SIGKILL), 0);
        }
    }
};

QTEST_GUILESS_MAIN(TestOutside)
#include "tst_outside.moc"
