#include "clocks.h"
#include "datetime/datetimesettings.h"
#include "datetime/ntpstatus.h"
#include "datetime/systemclock.h"
#include "datetime/timezones.h"

#include <QDateTime>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QTest>

/** What becomes of the texts that tools, files and people give, and of a time that is set. */
class TestDateTimeUnits : public QObject
{
    Q_OBJECT

private slots:
    void readsZones()
    {
        QCOMPARE(timezones::fromOutput("['Asia/Tokyo', 'UTC']\n"), (QStringList{"Asia/Tokyo", "UTC"}));
        QCOMPARE(timezones::fromOutput("[]"), QStringList(""));
        QCOMPARE(timezones::fromOutput(" a, 'b''c' ,,d'e\n"), (QStringList{"a", "bc", "", "de"}));
        QCOMPARE(timezones::fromOutput("x[[a,b][c]"), (QStringList{"[a", "b"}));
        QCOMPARE(timezones::fromOutput("x]y[a,b]"), (QStringList{"a", "b]"}));
    }

    void givesShellOneWord()
    {
        for (const QString strZone :
             {"Etc/GMT+1_2.3-4", "'; touch /tmp/run; '", "%2'; touch /tmp/run; '%1", "-n", "~", "*", "",
              "Ünter", "$(touch /tmp/run)`touch /tmp/run`;touch \"/tmp/run\"",
              "a\ntouch /tmp/run\n&& touch /tmp/run"}) {
            QProcess oShell;
            oShell.start("/bin/sh",
                         {"-c", timezones::script("printf '<%s><%s>' %1 %2", " \t" + strZone + " \n")});
            QVERIFY(oShell.waitForFinished());
            QCOMPARE(QString(oShell.readAll()), '<' + strZone + "><" + strZone + '>');
        }
        QVERIFY(!QFile::exists("/tmp/run"));
        QCOMPARE(timezones::script("%1", "Etc/GMT+1_2.3-4"), "Etc/GMT+1_2.3-4");
    }

    void showsPeer()
    {
        const std::pair<const char*, const char*> aPeers[] = {
            {"", "Connection error"},
            {" 10.0.0.1 .INIT. 16 u - 64 0 0.0 0.0 0.0\n", "Connection error"},
            {"*10.0.0.1 10.0.0.2 2 u - 128 377", "Connection error"},
            {"*10.0.0.1 10.0.0.2 2 u 64 128", "Connection error"},
            {"*10.0.0.1   10.0.0.2  2 u   64  128  377   0.6\n", "Last sync:64 secs ago"},
            {"*10.0.0.1 10.0.0.2 2 u 12m 128 377", "Last sync:12m secs ago"},
            {"*10.0.0.1 10.0.0.2 2 u 3h 128 377", "Last sync:3h hours ago"},
            {"*10.0.0.1 10.0.0.2 2 u 5d 128 1", "Last sync:5d days ago"}};
        for (const auto& [szLine, szText] : aPeers) {
            sNTPInfo oInfo;
            ntpstatus::readPeer(szLine, oInfo);
            QCOMPARE(ntpstatus::text(oInfo), szText);
        }
        QCOMPARE(ntpstatus::text({false, "", "377", ""}), "");
    }

    void readsServer()
    {
        const std::tuple<QByteArray, const char*, const char*> aFiles[] = {
            // text, server, log
            {R"({"x":[1,{"server":"c"}],"ntp":{"server":"zeit.bücher.example"}})", "zeit.bücher.example", ""},
            {QByteArray("{\"ntp\":{\"server\":\"a\"}}\0}", 25), "a", ""},
            {"", "none", "Trying to parse empty datetime json!"},
            {"\t\n", "none", "Parse error in datetime json Unexpected end of token stream"},
            {"server=a", "none", "Scan error in datetime json  Unexpected character in stream: s"},
            {"{\"a\":\"" + QByteArray(9999999, 'a') + "\"}", "none", // too long to be read whole
             "Scan error in datetime json  Expected string: \""},
            {R"({"NTP":{}})", "", "datetime json error:  Could not find 'ntp' json object"},
            {R"({"ntp":{"Server":"a"}})", "", "datetime json error:  Could not find 'server' entry"},
            {R"({"ntp":"a"})", "none", "Unknown datetime json error "},
            {R"({"ntp":{"server":1}})", "none", "Unknown datetime json error "}};
        for (const auto& [oText, szExpected, szLog] : aFiles) {
            QFile oFile("/tmp/datetime.json");
            QVERIFY(oFile.open(QIODevice::WriteOnly) && oFile.write(oText) == oText.size());
            oFile.close();
            QTest::ignoreMessage(QtWarningMsg, QRegularExpression("^\".*\"$")); // what was read
            if (*szLog) {
                QTest::ignoreMessage(QtWarningMsg, szLog);
            }
            QString strText;
            QString strServer("");
            QVERIFY(datetimesettings::readFile(oFile.fileName(), strText));
            QCOMPARE(datetimesettings::serverFromText(strText, strServer) ? strServer : "none", szExpected);
        }
    }

    void readsOnlyFiles()
    {
        QString strText;
        QVERIFY(!datetimesettings::readFile("/tmp/nothing", strText));
        QCOMPARE(QProcess::execute("mkfifo", {"/tmp/pipe"}), 0);
        for (const char* szPath : {"/tmp", "/tmp/pipe"}) {
            QTest::ignoreMessage(QtWarningMsg, QByteArray("datetime file missing: ") + szPath);
            QVERIFY(!datetimesettings::readFile(szPath, strText));
        }
    }

    void setsClocks()
    {
        qputenv("TZ", ":/usr/share/zoneinfo/Europe/Rome");
        const QString strSet = "set 1893549845 0 0, ";
        const QString strRTC = "open /dev/rtc 1, ";
        const QString strRequest = "ioctl 1: 5 4 2 2 0 130 3 1 0, ";
        const char* szTime = "2030-01-02T03:04:05";
        const std::tuple<const char*, const char*, QString> aTimes[] = {
            // fault, time, requests
            {"", szTime, strSet + strRTC + strRequest + "close"},
            {"other RTC", szTime, strSet + strRTC + "open /dev/misc/rtc 1, " + strRequest + "close"},
            {"no RTC", szTime,
             strSet + strRTC + "open /dev/misc/rtc 1, Could not access RTC: No such file or directory, " +
                 strRequest + "Could not set the RTC time: Bad file descriptor"},
            {"stuck RTC", szTime,
             strSet + strRTC + strRequest + "Could not set the RTC time: Invalid argument, close"},
            {"refused", szTime, strSet + "Error setting system time: Operation not permitted"},
            {"", "1970-01-01T01:00:00", "set 0 0 0, " + strRTC + "ioctl 1: 0 0 0 1 0 70 4 0 0, close"},
            {"", "2106-02-07T07:28:14",
             "set 4294967294 0 0, " + strRTC + "ioctl 1: 14 28 6 7 1 206 0 37 0, close"},
            {"too early", "1970-01-01T00:59:59", ""},
            {"too late", "2106-02-07T07:28:15", ""},
            {"left out by summer time", "2027-03-28T02:30:00", ""}};
        for (const auto& [szFault, szLocal, strRequests] : aTimes) {
            clocks::g_strFault = szFault;
            clocks::g_oRequests.clear();
            const QString strLocal = szLocal;
            const bool bSet = writeLocalTime(QDate::fromString(strLocal.left(10), Qt::ISODate),
                                             QTime::fromString(strLocal.mid(11), Qt::ISODate));
            QCOMPARE(clocks::g_oRequests.join(", "), strRequests);
            QCOMPARE(bSet, !strRequests.isEmpty() && clocks::g_strFault != "refused");
        }
    }
};

QTEST_GUILESS_MAIN(TestDateTimeUnits)
#include "tst_datetimeunits.moc"
