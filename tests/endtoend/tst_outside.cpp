#include "support/panelprocess.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTest>
#include <csignal>
#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

const QString s_strPipe = "/tmp/tarnixUI";
const QByteArray s_oMessage = "paintEvent finished";
const QByteArray s_oWritten = "writeToNamedPipe Written message to named pipe successfully\n";

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

bool makeSocket(const QString& strPath)
{
    sockaddr_un oAddress{AF_UNIX, {}};
    qstrncpy(oAddress.sun_path, strPath.toLatin1(), sizeof oAddress.sun_path);
    const int nSocket = socket(AF_UNIX, SOCK_STREAM, 0);
    const bool bBound = bind(nSocket, reinterpret_cast<sockaddr*>(&oAddress), sizeof oAddress) == 0;
    close(nSocket);
    return bBound;
}

// Makes a system call of the program on the pipe fail.
void runTraced(PanelProcess& oPanel, const QString& strFault)
{
    oPanel.process().setArguments({"-o", "/dev/null", "-P", s_strPipe, "-e", strFault, PANEL_PROGRAM});
    oPanel.process().setProgram("strace");
    QProcessEnvironment oEnvironment = oPanel.process().processEnvironment();
    oEnvironment.insert("ASAN_OPTIONS", "detect_leaks=0"); // a traced process cannot look for its leaks
    oPanel.process().setProcessEnvironment(oEnvironment);
}

} // namespace

/** What the program does to the world around it: the named pipe and the configuration application. */
class TestOutside : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        QFile::remove(s_strPipe);
        QDir().rmdir(s_strPipe);
        QFile::remove("/tmp/victim");
        QFile::remove("/usr/bin/kadconfig-app");
    }

    void pipeReachesLateReaderOnce()
    {
        PanelProcess oPanel;
        QVERIFY(oPanel.start());
        // While nobody reads, the panel works.
        QTRY_VERIFY(QFileInfo::exists(s_strPipe));
        oPanel.send("v1.2\n");
        QCOMPARE(oPanel.waitForText("targetVersionForm_Label", "1.2"), QString("1.2"));
        QTest::qWait(1000);
        QVERIFY(!oPanel.log().contains(s_oWritten));

        QProcess oReader;
        oReader.start("cat", {s_strPipe});
        QVERIFY(oReader.waitForFinished());
        QCOMPARE(oReader.readAllStandardOutput(), s_oMessage);
        QVERIFY(oPanel.waitForLog(s_oWritten));

        // Neither more time nor more painting brings a second message.
        const int nReader = open(qPrintable(s_strPipe), O_RDONLY | O_NONBLOCK);
        oPanel.send("n5\nv1.3\n");
        QTest::qWait(1000);
        char szByte = 0;
        QCOMPARE(read(nReader, &szByte, 1), ssize_t(0));
        close(nReader);
        QCOMPARE(oPanel.quit(), 0);
        QCOMPARE(oPanel.log().count("writeToNamedPipe"), 1);
    }

    void pipeOutlivesReaderThatLeaves()
    {
        // The first write finds that the reader has just gone.
        PanelProcess oPanel;
        runTraced(oPanel, "inject=write:error=EPIPE:signal=SIGPIPE:when=1");
        QVERIFY(oPanel.start());
        QTRY_VERIFY(QFileInfo::exists(s_strPipe));
        QProcess oReader;
        oReader.start("cat", {s_strPipe});
        QVERIFY(oReader.waitForFinished());
        QVERIFY2(oPanel.waitForLog("Failed to open named pipe for writing 2 Broken pipe\n"), oPanel.log());

        oReader.start("cat", {s_strPipe});
        QVERIFY(oReader.waitForFinished());
        QCOMPARE(oReader.readAllStandardOutput(), s_oMessage);
        QVERIFY(oPanel.waitForLog(s_oWritten));
    }

    void pipePathIsTaken_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QByteArray>("log");
        const QByteArray oText = "Failed to open named pipe for writing 2 ";
        QTest::newRow("directory") << "directory" << oText + "Is a directory\n";
        QTest::newRow("socket") << "socket" << oText + "No such device or address\n";
        QTest::newRow("symbolic link") << "link" << oText + "Too many levels of symbolic links\n";
        QTest::newRow("full disk")
            << "full" << QByteArray("Failed to create named pipe for writing 1 No space left on device\n");
    }

    void pipePathIsTaken()
    {
        QFETCH(QString, kind);
        QFETCH(QByteArray, log);
        QVERIFY(write("/tmp/victim", "precious"));
        PanelProcess oPanel;
        if (kind == "directory") {
            QVERIFY(QDir().mkdir(s_strPipe));
        } else if (kind == "socket") {
            QVERIFY(makeSocket(s_strPipe));
        } else if (kind == "link") {
            QVERIFY(QFile::link("/tmp/victim", s_strPipe));
        } else {
            runTraced(oPanel, "inject=/mknod:error=ENOSPC");
        }
        QVERIFY(oPanel.start());
        QVERIFY2(oPanel.waitForLog(log), oPanel.log());
        oPanel.send("v1.2\n");
        QCOMPARE(oPanel.quit(), 0);
        QCOMPARE(oPanel.log().count("named pipe"), 1);
        QCOMPARE(contents("/tmp/victim"), QByteArray("precious"));
    }

    void pipeIntoRegularFile()
    {
        QVERIFY(write(s_strPipe, "0123456789012345678901234567890"));
        PanelProcess oPanel;
        QVERIFY(oPanel.start());
        QVERIFY(oPanel.waitForLog(s_oWritten));
        QCOMPARE(contents(s_strPipe), s_oMessage + "901234567890");
    }

    void configurationApplication()
    {
        const Display oDisplay({800, 480});
        PanelProcess oPanel(oDisplay.name());
        oPanel.process().setProgram("/bin/sh");
        oPanel.process().setArguments({"-c", "exec " PANEL_PROGRAM " 7</dev/zero"}); // must not be inherited
        QVERIFY(oPanel.start());
        const QPoint oButton = oPanel.widget("toolButton").rect().center();

        // Without the application a tap does nothing.
        QVERIFY(oDisplay.tap(oButton));
        QTest::qWait(300);

        // The application tells what it got, then stays.
        QVERIFY(write("/usr/bin/kadconfig-app",
                      "#!/bin/bash\n"
                      "echo lost output; echo lost error >&2\n"
                      "streams=$(readlink /proc/$$/fd/{0,1,2} /proc/$$/fd/7)\n"
                      "echo \"[$QTDIR][$QT_PLUGIN_PATH][$LD_LIBRARY_PATH] \"$streams >/tmp/new.$$\n"
                      "mv /tmp/new.$$ /tmp/app.$$\nexec sleep 1000\n"));
        QFile::setPermissions("/usr/bin/kadconfig-app", QFile::ReadOwner | QFile::ExeOwner);
        QVERIFY(oDisplay.tap(oButton));
        QVERIFY(oDisplay.tap(oButton)); // each tap starts one
        const auto fnReports = [] { return QDir("/tmp").entryList({"app.[0-9]*"}); };
        QTRY_COMPARE(fnReports().size(), 2);
        QCOMPARE(contents("/tmp/" + fnReports().first()),
                 QByteArray("[][][] /dev/null /dev/null /dev/null\n"));

        // The panel ends, and with it its output, though the applications live on.
        QCOMPARE(oPanel.quit(), 0);
        QCOMPARE(oPanel.output(), QByteArray("First message\n> Good bye!\n"));
        const QStringList oReports = fnReports();
        for (const QString& strReport : oReports) {
            QCOMPARE(kill(strReport.section('.', 1).toInt(), SIGKILL), 0);
        }
    }
};

QTEST_GUILESS_MAIN(TestOutside)
#include "tst_outside.moc"
