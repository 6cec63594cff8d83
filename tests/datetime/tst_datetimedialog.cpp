#include "clocks.h"
#include "datetime/datetimedialog.h"
#include "datetime/systemclock.h"
#include "platform/ovikplatform.h"
#include "support/simulatorprocess.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QDateTimeEdit>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QRegularExpression>
#include <QTest>

namespace {

std::unique_ptr<DateTimeDialog> g_pDialog;
QStringList g_oLog;

void takeMessage(QtMsgType /*eType*/, const QMessageLogContext& /*oContext*/, const QString& strText)
{
    static const QRegularExpression s_oError("(onProcessError.*) \\d+");
    if (strText.startsWith("onProcessStarted")) {
        const QProcess* pTool = g_pDialog->findChildren<QProcess*>().last();
        g_oLog += (QStringList("started " + pTool->program()) + pTool->arguments()).join(' ');
    } else if (!strText.startsWith("This plugin does not")) { // of the offscreen platform
        g_oLog += QString(strText).replace(s_oError, "\\1");
    }
}

// What tools write and the settings file holds, and what becomes of it.
const char s_szZones[] = "kadconfig-gen-timezones.sh";
const char s_szCrash[] = "onProcessError Error:  QProcess::Crashed";
const std::tuple<const char*, const char*, const char*, const char*> s_aReports[] = {
    // tool, its script, a part of what is shown, errors in the log
    {s_szZones, "printf '[a,Euro'; sleep 0.1; printf 'pe/Rome\\0lost'; sleep 0.1; echo ]",
     "<Europe/Rome of a|Europe/Rome>", ""},
    {s_szZones, "echo \"x[[a, 'b''c' ,,d'e][f]\"", "<[a of [a|bc||de>", ""},
    {s_szZones, "echo 'x]y[a,b]'", "<a of a|b]>", ""},
    {s_szZones, "echo '[a,'; sleep 1000 & exec yes b,", "<a of a|b|b|b>", s_szCrash},
    {s_szZones, "", "<Europe/Rome of >", "onProcessError Error:  QProcess::FailedToStart"}, // not executable
    {s_szZones, "echo '[]'; exit 1", "<Europe/Rome of >", ""},
    {s_szZones, "echo '[,UTC]'", "< of |UTC>", ""},
    {"cat", "printf ' Euro'; sleep 0.1; printf 'pe/Rome\\n\\0UTC'", "<Europe/Rome of", ""},
    {"cat", "printf 'UTC%200000s'; exec sleep 1000", "<UTC of", s_szCrash},
    {"sed", "printf '* 10.0'; sleep 0.1; printf '.0.2 2 u 6'; sleep 0.1; echo '4 128 377'",
     "<Last sync:64 secs ago>", ""},
    {"sed", "printf %200000s; exec sleep 1000", "<Connection error>", s_szCrash},
    {"sed", "echo ' 10.0.0.1 .INIT. 16 u - 64 0 0.0 0.0 0.0'", "<Connection error>", ""},
    {"sed", "echo '*10.0.0.1 10.0.0.2 2 u 64 128'", "<Connection error>", ""},
    {"sed", "echo '*10.0.0.1 10.0.0.2 2 u 3h 128 377'", "<Last sync:3h hours ago>", ""},
    {"sed", "echo '*10.0.0.1 10.0.0.2 2 u 5d 128 1'", "<Last sync:5d days ago>", ""},
    // or how the settings file comes to be
    {"", "rm $file", "<pool.ntp.org>", ""},
    {"", "rm $file; mkfifo $file", "<pool.ntp.org>", "datetime file missing: /etc/kadconfig/datetime.json"},
    {"", R"(echo '{"x":[1,{"server":"c"}],"ntp":{"server":"zeit.bücher.example"}}' >$file)",
     "<zeit.bücher.example>", ""},
    {"", ">$file", "<pool.ntp.org>", "Trying to parse empty datetime json!"},
    {"", "echo >$file", "<pool.ntp.org>", "Parse error in datetime json Unexpected end of token stream"},
    {"", R"(printf '{"a":"%09999999d"}' 0 >$file)", "<pool.ntp.org>", // too long to be read whole
     "Scan error in datetime json  Expected string: \""},
    {"", R"(echo '{"NTP":{}}' >$file)", "<>", "datetime json error:  Could not find 'ntp' json object"},
    {"", R"(echo '{"ntp":{"server":1}}' >$file)", "<pool.ntp.org>", "Unknown datetime json error "}};

QByteArray contents(const QString& strPath)
{
    QFile oFile(strPath);
    return oFile.open(QIODevice::ReadOnly) ? oFile.readAll() : QByteArray();
}

bool runInShell(const QString& strCommand)
{
    return QProcess::execute("bash", {"-c", strCommand}) == 0;
}

bool nothingSleeps() // of what the tools have started
{
    return runInShell("! /bin/cat /proc/[0-9]*/cmdline 2>/dev/null | tr '\\0' ' ' | grep -q 'sleep 100[0]'");
}

} // namespace

/** The dialog on a simulated device, with clocks that only note what they are asked for. */
class TestDateTimeDialog : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QVERIFY(m_oBus.start() && m_oService.start(m_oBus));
        qputenv("DBUS_SYSTEM_BUS_ADDRESS", m_oBus.address().toUtf8());
        qputenv("PATH", "/tmp/tools:" + qgetenv("PATH"));
        QVERIFY(OVIKPlatform::getInstance()->Init());
        qInstallMessageHandler(takeMessage);
    }

    void init()
    {
        QVERIFY(runInShell("rm -rf /etc/{kadconfig,ntp.conf,timezone,localtime} /tmp/{tools,hangs}; "
                           "mkdir /tmp/tools; '" DEVICE_TOOLS "'"));
        setTool(s_szZones, "echo \"['Asia/Tokyo', 'Europe/Rome', 'UTC']\"");
        OVIKPlatform::getInstance()->restartNTPDService(false);
        takeCalls();
    }

    void cleanup() { g_pDialog.reset(); }

    void readsThenSetsNTP()
    {
        const QString strFinished = "onProcessFinished exitCode: 0 exitStatus QProcess::NormalExit 0";
        open();
        g_oLog.sort(); // output may come before the news of the start
        QCOMPARE(
            g_oLog,
            (QStringList{"\"64\" \"377\"", "\"{\\\"ntp\\\" : {\\\"server\\\" : \\\"192.168.1.1\\\"}}\\n\"",
                         strFinished, strFinished, strFinished,
                         "onReadyReadStandardOutput Current timezone \"Europe/Rome\"",
                         "started /bin/sh -c #!/bin/sh\n\nntpq -pn | sed -n 3p\n",
                         "started /usr/bin/kadconfig-gen-timezones.sh", "started cat /etc/timezone"}));
        QVERIFY(!m_pServer->isEnabled() && m_pDate->isEnabled());

        m_pAutomatic->click();
        QVERIFY(m_pServer->isEnabled() && !m_pDate->isEnabled());
        m_pDate->setDateTime(m_pDate->dateTime().addDays(1));
        apply("Etc/GMT+1_2.3-4"); // needs no quotes
        const QString strSetsTimeZone =
            "started /bin/sh -c #!/bin/sh\n\n"
            "ln -s -f /usr/share/zoneinfo/posix/Etc/GMT+1_2.3-4 /etc/localtime\n"
            "File_Permission = stat -c \"%a %n\" /etc/timezone\nchmod 777 /etc/timezone\n"
            "echo Etc/GMT+1_2.3-4 > /etc/timezone\nchmod $File_Permission /etc/timezone\n";
        QCOMPARE(g_oLog,
                 (QStringList{strSetsTimeZone, QString(strFinished).replace("exitCode: 0", "exitCode: 1"),
                              QString("setTimeZone failed: /etc/localtime leads to no readable file for "
                                      "\"Etc/GMT+1_2.3-4\""),
                              QString("started /bin/sh -c #!/bin/sh\n\n"
                                      "/usr/bin/kadconfig-gen-ntp-conf.sh > /etc/kadconfig-ntp.conf\n"),
                              strFinished}));
        QCOMPARE(contents("/etc/ntp.conf"), "driftfile /var/lib/ntp/ntp.drift\nserver 192.168.1.1 iburst\n");
        QCOMPARE(takeCalls(), R"(enabled("ntpd") stop("ntpd") disable("ntpd") enable("ntpd") start("ntpd"))");
        QCOMPARE(clocks::g_oRequests, QStringList());

        QVERIFY(runInShell("echo old >/etc/ntp.conf; ln -sf /nonexistent/x /etc/kadconfig-ntp.conf"));
        apply("UTC");
        QCOMPARE(g_oLog.last(), "File missing:  /etc/kadconfig-ntp.conf");
        QCOMPARE(contents("/etc/ntp.conf"), "old\n");
        QCOMPARE(takeCalls(), "");
    }

    void setsZoneThenChangedTime()
    {
        OVIKPlatform::getInstance()->restartNTPDService(true);
        takeCalls();
        open();
        QVERIFY(m_pAutomatic->isChecked() && m_pServer->isEnabled() && !m_pDate->isEnabled());
        m_pAutomatic->click();
        for (const QString strZone : {"../../../etc", "%2'; touch /tmp/hangs; '%1", "", "~", "*",
                                      "$(touch /tmp/hangs)`touch /tmp/hangs`\"", " Asia/Tokyo ", " "}) {
            const QByteArray oFormer = contents("/etc/timezone");
            apply(strZone);
            const QByteArray oZone = strZone.trimmed().toUtf8();
            QCOMPARE(contents("/etc/timezone"), oZone.isEmpty() ? oFormer : oZone + '\n');
        }
        QVERIFY(
            !g_pDialog->findChild<QAbstractButton*>("applyButton")->icon().isNull()); // after failures, too
        QCOMPARE(QFile::symLinkTarget("/etc/localtime"), "/usr/share/zoneinfo/posix/Asia/Tokyo");
        QVERIFY(!QFile::exists("/tmp/hangs"));
        QVERIFY(takeCalls().startsWith(R"(enabled("ntpd") stop("ntpd") disable("ntpd") stop)"));
        QCOMPARE(contents("/etc/ntp.conf"), "server 127.127.1.0\n");
        QCOMPARE(clocks::g_oRequests, QStringList());

        m_pDate->setDateTime({{2030, 1, 2}, {11, 4, 5}});
        clocks::g_strFault = "refused";
        apply("Asia/Tokyo");
        QCOMPARE(clocks::g_oRequests.value(0), "set 1893549845 0 0");
        QCOMPARE(g_oLog.last(), "saveDateTime failed");
    }

    void keepsTypedText()
    {
        QVERIFY(runInShell("echo asia/tokyo >/etc/timezone")); // in the list but for its case
        open(false);
        QTest::keyClicks(m_pZones->lineEdit(), "ASIA/TOKYO");
        QTRY_VERIFY(isIdle());
        QTest::keyClick(m_pZones, Qt::Key_Return);
        QVERIFY(shown().startsWith("<ASIA/TOKYO of "));
        QVERIFY(g_pDialog->isVisible());
        QCOMPARE(takeCalls(), "enabled(\"ntpd\")"); // Return applies nothing
    }

    void showsWhatToolsAndFilesHold()
    {
        static const QRegularExpression s_oErrors("onProcessError|datetime");
        for (const auto& [szTool, szScript, szShown, szErrors] : s_aReports) {
            init();
            if (*szTool) {
                setTool(szTool, szScript);
            } else {
                QVERIFY(runInShell(QString("file=/etc/kadconfig/datetime.json; ") + szScript));
            }
            open();
            QVERIFY2(shown().contains(szShown), qPrintable(shown() + szScript));
            QCOMPARE(g_oLog.filter(s_oErrors).join(' '), szErrors);
            QTRY_VERIFY(nothingSleeps());
        }
    }

    void endsTools()
    {
        for (const QString strTool : {s_szZones, "cat", "ntpq"}) {
            for (const bool bApply : {true, false}) {
                init();
                setTool(strTool, "trap '' TERM HUP; echo '[x]'; touch /tmp/hangs; sleep 1000; sleep 1000");
                open(false);
                QTRY_VERIFY(QFile::exists("/tmp/hangs"));
                if (bApply) {
                    apply("UTC");
                    QCOMPARE(contents("/etc/timezone"), "UTC\n");
                    QCOMPARE(g_oLog.filter("started").size(), 1); // the reading has ended
                }
                g_pDialog.reset();
                QTRY_VERIFY(nothingSleeps());
            }
        }
    }

    void setsClocks()
    {
        qputenv("TZ", ":/usr/share/zoneinfo/Europe/Rome");
        const QString strSet = "set 1893549845 0 0, open /dev/rtc 1, ";
        const QString strOther = "open /dev/misc/rtc 1, ";
        const QString strRequest = "ioctl 1: 5 4 2 2 0 130 3 1 0, ";
        const std::pair<const char*, QString> aFaults[] = {
            {"", strSet + strRequest + "close"},
            {"other RTC", strSet + strOther + strRequest + "close"},
            {"no RTC", strSet + strOther + "Could not access RTC: No such file or directory, " + strRequest +
                           "Could not set the RTC time: Bad file descriptor"},
            {"stuck RTC", strSet + strRequest + "Could not set the RTC time: Invalid argument, close"},
            {"refused", "set 1893549845 0 0, Error setting system time: Operation not permitted"}};
        for (const auto& [szFault, strRequests] : aFaults) {
            clocks::g_strFault = szFault;
            clocks::g_oRequests.clear();
            QCOMPARE(writeLocalTime({2030, 1, 2}, {3, 4, 5}), clocks::g_strFault != "refused");
            QCOMPARE(clocks::g_oRequests.join(", "), strRequests);
        }
        clocks::g_oRequests.clear();
        QVERIFY(!writeLocalTime({2027, 3, 28}, {2, 30})); // left out by summer time
        QVERIFY(!writeLocalTime({1969, 12, 31}, {23, 59}) && !writeLocalTime({2106, 2, 8}, {0, 0}));
        QCOMPARE(clocks::g_oRequests, QStringList());
    }

private:
    static void setTool(const QString& strName, const QByteArray& oScript)
    {
        QFile oFile((strName.startsWith("kadconfig") ? "/usr/bin/" : "/tmp/tools/") + strName);
        QVERIFY(oFile.open(QIODevice::WriteOnly) && oFile.write("#!/bin/bash\n" + oScript) > 0);
        QVERIFY(
            oFile.setPermissions(oScript.isEmpty() ? QFile::ReadOwner : QFile::ReadOwner | QFile::ExeOwner));
    }

    void open(bool bAwaitIdle = true)
    {
        g_oLog.clear();
        clocks::g_oRequests.clear();
        g_pDialog = std::make_unique<DateTimeDialog>(nullptr);
        g_pDialog->show();
        m_pZones = g_pDialog->findChild<QComboBox*>("timezone_ComboBox");
        m_pDate = g_pDialog->findChild<QDateTimeEdit*>("currentDate_DateEdit");
        m_pAutomatic = g_pDialog->findChild<QAbstractButton*>("autoUpdate_CheckBox");
        m_pServer = g_pDialog->findChild<QLineEdit*>("autoUpdate_LineEdit");
        QTRY_VERIFY_WITH_TIMEOUT(!bAwaitIdle || isIdle(), 60000);
    }

    void apply(const QString& strZone)
    {
        g_oLog.clear();
        m_pZones->setEditText(strZone);
        g_pDialog->findChild<QAbstractButton*>("applyButton")->click();
        const auto* pBusyMark = g_pDialog->findChild<QWidget*>("busyMark");
        QVERIFY(pBusyMark->isVisible());
        QTRY_VERIFY_WITH_TIMEOUT(isIdle() && !pBusyMark->isVisible(), 60000);
    }

    static bool isIdle()
    {
        const auto oTools = g_pDialog->findChildren<QProcess*>();
        return std::all_of(oTools.begin(), oTools.end(),
                           [](auto* p) { return p->state() == QProcess::NotRunning; });
    }

    // The zone with the first of all zones, the state, and the server.
    QString shown() const
    {
        QStringList oZones;
        for (int i = 0; i < qMin(4, m_pZones->count()); ++i) {
            oZones += m_pZones->itemText(i);
        }
        return '<' + m_pZones->currentText() + " of " + oZones.join('|') + "><" +
               g_pDialog->findChild<QLabel*>("ntpStatus_Label")->text() + "><" + m_pServer->text() + '>';
    }

    QString takeCalls()
    {
        OVIKPlatform::getInstance()->isNTPDEnabled(); // comes behind all calls that were not awaited
        const QStringList oCalls = m_oService.calls();
        m_oService.steering().ClearCalls().waitForFinished();
        return oCalls.mid(0, oCalls.size() - 1).join(' ').remove("/ServiceManager ");
    }

    PrivateBus m_oBus;
    SimulatorProcess m_oService;
    QComboBox* m_pZones = nullptr;
    QDateTimeEdit* m_pDate = nullptr;
    QAbstractButton* m_pAutomatic = nullptr;
    QLineEdit* m_pServer = nullptr;
};

QTEST_MAIN(TestDateTimeDialog)
#include "tst_datetimedialog.moc"
