#include "clocks.h"
#include "datetime/datetimedialog.h"
#include "network/networkinterfaceaccess.h"
#include "network/networksettingsdialog.h"
#include "panel/interfacesettings.h"
#include "platform/ovikplatform.h"
#include "platform/pendingreplies.h"
#include "support/simulatorprocess.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QDateTimeEdit>
#include <QLabel>
#include <QRegularExpression>
#include <QTest>

namespace {

QStringList g_oLog; // without the steps of the tools

void takeMessage(QtMsgType /*eType*/, const QMessageLogContext& /*oContext*/, const QString& strText)
{
    static const QRegularExpression s_oStep("^(onProcess|onReadyRead|\"|This plugin)");
    if (!s_oStep.match(strText).hasMatch()) {
        g_oLog += strText;
    }
}

bool runInShell(const QString& strCommand)
{
    return QProcess::execute("bash", {"-c", strCommand}) == 0;
}

/** The part of the panel that the network dialog uses. */
class Panel : public QWidget, public NetworkInterfaceAccess
{
public:
    sNetworkInterfaceDetails getInterfaceDetails(const QString& strName) override
    {
        return m_oSettings.read(strName);
    }
    bool setInterfaceDetails(const sNetworkInterfaceDetails& o) override
    {
        return InterfaceSettings::write(o);
    }
    QObject* watchReplies() override { return OVIKPlatform::getInstance()->watchReplies(); }

private:
    InterfaceSettings m_oSettings;
};

// A situation, what is applied in it, the world of the service, and the log; a tick shows if that is empty.
const std::tuple<const char*, const char*, const char*, const char*> s_aSituations[] = {
    {"", "zone", "well", ""},
    {"", "no zone", "well", ""},
    {"", "clock", "well", ""},
    {"", "NTP", "well", ""},
    {"", "network", "well", ""},
    {"mount -o remount,bind,ro /etc", "zone", "well",
     "setTimeZone failed: /etc/timezone does not name \"UTC\""},
    {"mount -o remount,bind,ro /etc", "NTP", "well", "File missing:  /etc/kadconfig-ntp.conf"},
    {"echo stale >/etc/kadconfig-ntp.conf; mount -o remount,bind,ro /etc", "NTP", "well",
     "saveNTPSettings failed: /etc/ntp.conf stays as it is: Read-only file system"},
    {"rm /usr/share/zoneinfo/posix/UTC", "zone", "well",
     "setTimeZone failed: /etc/localtime leads to no readable file for \"UTC\""},
    {"rm /etc/localtime; mkdir -p /etc/localtime/x", "zone", "well", // cannot be replaced
     "setTimeZone failed: /etc/localtime leads to no readable file for \"UTC\""},
    {"rm /etc/localtime; touch /etc/localtime; mount -B /usr/share/zoneinfo/Asia/Tokyo /etc/localtime",
     "zone", "well", "setTimeZone failed: /etc/localtime leads to no readable file for \"UTC\""},
    {"# the clock is refused", "clock", "well", "saveDateTime failed"},
    {"rm $generator", "NTP", "well", "saveNTPSettings failed: /etc/kadconfig-ntp.conf is empty"},
    {"echo >$generator", "NTP", "well", "saveNTPSettings failed: /etc/kadconfig-ntp.conf is empty"},
    {"printf '#!/bin/sh\\necho server; exit 1' >$generator", "NTP", "well",
     "saveNTPSettings failed: the generator failed"},
    {"rm /etc/ntp.conf; mkdir /etc/ntp.conf; echo server 127.127.1.0 >/etc/ntp.conf/x", "NTP", "well",
     "saveNTPSettings failed: /etc/ntp.conf stays as it is: Is a directory"},
    {"printf '#!/bin/sh\\nhead -c 20000 /dev/zero' >$generator; cp -a "
     "/etc/{kadconfig,localtime,ntp.conf,timezone} /tmp/tools;"
     "mount -t tmpfs -o size=44k tmpfs /etc; cp -a /tmp/tools/* /etc",
     "NTP", "well", "saveNTPSettings failed: /etc/ntp.conf stays as it is: No space left on device"},
    {"", "zone", "errors stop", "Platform service failed: stop: Simulated failure"},
    {"", "clock", "errors disable", "Platform service failed: disable: Simulated failure"},
    {"", "NTP", "errors enable", "Platform service failed: enable: Simulated failure"},
    {"", "NTP", "refuses", "Platform service failed: stop, disable, enable, start: refused"},
    {"", "NTP", "wrong-types",
     "Platform service failed: stop, disable, enable, start: Unexpected reply signature: "
     "got \"as\", expected \"i\""},
    {"", "NTP", "silent start",
     "Platform service failed: start: Message did not receive a reply (timeout by message bus)"},
    {"", "NTP", "vanishes start",
     "Platform service failed: start: Message recipient disconnected from message bus "
     "without replying"},
    {"", "zone", "absent",
     "Platform service failed: stop, disable: The name com.quen.OVIK was not provided by any "
     ".service files"},
    {"", "network", "absent", "saveValues failed: the settings were not sent for \"eth0\""},
    {"", "network", "errors getInterfaceConfig",
     "saveValues failed: the settings were not sent for \"eth0\""},
    {"", "network", "errors setInterfaceConfigJSON",
     "Platform service failed: setInterfaceConfigJSON: Simulated failure"},
    {"", "network", "refuses setInterfaceConfigJSON",
     "Platform service failed: setInterfaceConfigJSON: refused"},
    {"", "network", "errors applyNewConfiguration",
     "Platform service failed: applyNewConfiguration: Simulated failure"},
    {"", "network", "silent applyNewConfiguration",
     "Platform service failed: applyNewConfiguration: "
     "Message did not receive a reply (timeout by message bus)"}};

} // namespace

/** What the mark on Apply promises, on a simulated device. */
class TestApply : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QVERIFY(m_oBus.start() && m_oService.start(m_oBus));
        QVERIFY(m_oService.setDocument(R"({"version":1,"interfaces":[{"name":"eth0"}]})"));
        qputenv("DBUS_SYSTEM_BUS_ADDRESS", m_oBus.address().toUtf8());
        QVERIFY(OVIKPlatform::getInstance()->Init());
        qInstallMessageHandler(takeMessage);
    }

    void promises_data()
    {
        QTest::addColumn<int>("nRow");
        int nRow = 0;
        for (const auto& [szSetup, szApplied, szWorld, szLog] : s_aSituations) {
            QTest::addRow("%s, %s, %s", szApplied, szWorld, szSetup) << nRow++;
        }
    }

    void promises()
    {
        QFETCH(int, nRow);
        const auto& [szSetup, szApplied, szWorld, szLog] = s_aSituations[nRow];
        QVERIFY(runInShell("rm -rf /etc/{kadconfig*,ntp.conf,timezone,localtime} /tmp/tools; mkdir "
                           "/tmp/tools; '" DEVICE_TOOLS "'; ln -sf ../UTC /usr/share/zoneinfo/posix/UTC"));
        clocks::g_strFault = QString(szSetup).contains("clock") ? "refused" : "";
        QVERIFY(runInShell(QString("generator=/usr/bin/kadconfig-gen-ntp-conf.sh; ") + szSetup));
        openDialog(szApplied);
        setWorld(szWorld);
        m_pApply->click();
        QVERIFY(m_pBusyMark->isVisible());
        QTRY_VERIFY_WITH_TIMEOUT(!m_pBusyMark->isVisible(), 60000);
        const bool bTick = !m_pApply->icon().isNull();
        const QString strLog = g_oLog.join('\n');
        const bool bReplaced = !runInShell("grep -rq 'server 127.127.1.0' /etc/ntp.conf");
        QVERIFY(runInShell("test $(stat -Lc %a /etc/ntp.conf) -ge 644 -a ! -e /etc/ntp.conf.*"));
        m_pDialog.reset();
        setWorld("well");
        runInShell(
            "! mountpoint -q /etc || mount -o remount,bind,rw /etc; ! mount | grep -q 'tmpfs on /etc ' || "
            "umount /etc; umount -q /etc/localtime");
        QCOMPARE(strLog, szLog);
        QCOMPARE(bTick, !*szLog);
        QCOMPARE(bReplaced,
                 QString(szApplied) == "NTP" && !strLog.contains("stays") && !strLog.contains("missing"));
    }

    // The mark is that of the latest Apply, and the log is written without the dialog, too.
    void followsTheLatest()
    {
        openDialog("network");
        setWorld("silent applyNewConfiguration");
        m_pApply->click();
        QTest::qWait(1500);
        m_pApply->click();
        QTRY_COMPARE(g_oLog.size(), 1);
        QVERIFY(m_pBusyMark->isVisible());
        m_pDialog.reset();
        QTRY_COMPARE(g_oLog.size(), 2);
        QTRY_VERIFY(!OVIKPlatform::getInstance()->findChild<PendingReplies*>()); // nothing is left of them
    }

private:
    // Opens the dialog and enters what is to be applied: "zone", "no zone", "clock", "NTP" or "network".
    void openDialog(const QString& strApplied)
    {
        g_oLog.clear();
        if (strApplied == "network") {
            m_pDialog = std::make_unique<NetworkSettingsDialog>(
                QList<sNetworkInterfaceDetails>{{"eth0", {}, {}, {}, {}, false}}, "eth0", &m_oPanel);
        } else {
            m_pDialog = std::make_unique<DateTimeDialog>(nullptr);
            QTRY_VERIFY(!m_pDialog->findChild<QLabel*>("ntpStatus_Label")->text().isEmpty()); // all is read
            m_pDialog->findChild<QComboBox*>("timezone_ComboBox")
                ->setEditText(strApplied == "zone"      ? "UTC"
                              : strApplied == "no zone" ? " "
                                                        : "Europe/Rome");
            m_pDialog->findChild<QAbstractButton*>("autoUpdate_CheckBox")->setChecked(strApplied == "NTP");
            auto* pDate = m_pDialog->findChild<QDateTimeEdit*>("currentDate_DateEdit");
            pDate->setDateTime(pDate->dateTime().addDays(strApplied == "clock" ? 1 : 0));
        }
        m_pDialog->show();
        m_pApply = m_pDialog->findChild<QAbstractButton*>("applyButton");
        m_pBusyMark = m_pDialog->findChild<QWidget*>("busyMark");
    }

    void setWorld(const QString& strWorld)
    {
        QVERIFY(SimulatorProcess::succeeds(
            m_oService.steering().SetWorld(strWorld.section(' ', 0, 0), strWorld.section(' ', 1))));
    }

    PrivateBus m_oBus;
    SimulatorProcess m_oService;
    Panel m_oPanel;
    std::unique_ptr<QDialog> m_pDialog;
    QAbstractButton* m_pApply = nullptr;
    QWidget* m_pBusyMark = nullptr;
};

QTEST_MAIN(TestApply)
#include "tst_apply.moc"
