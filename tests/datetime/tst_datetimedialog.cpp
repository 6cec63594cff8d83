#include "datetime/datetimedialog.h"
#include "platform/ovikplatform.h"
#include "support/simulatorprocess.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QDateTimeEdit>
#include <QFile>
#include <QHash>
#include <QLineEdit>
#include <QRegularExpression>
#include <QTest>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <functional>
#include <sys/time.h>

namespace {

QStringList g_oTranscript;
QString g_strClock; // what is wrong with the clocks
int g_nRTC = -1;

void note(QChar cKind, const QString& strText)
{
    if (cKind == '#' && !g_oTranscript.isEmpty() && g_oTranscript.last().startsWith(cKind)) {
        g_oTranscript.last() += ", " + strText;
    } else {
        g_oTranscript += cKind + QStringLiteral(" ") + strText.left(500);
    }
}

void noteMessage(QtMsgType /*eType*/, const QMessageLogContext& /*oContext*/, const QString& strText)
{
    if (strText.startsWith("This plugin does not")) {
        return; // of the offscreen platform
    }
    static const QRegularExpression s_oWithId("^(onProcessStarted|onProcessError).* ");
    const QString strStart = s_oWithId.match(strText).captured();
    note('!', strStart.isEmpty() ? strText : strStart + "ID");
    // The output of a process may overtake the news of its start.
    if (strText.startsWith("onProcessStarted")) {
        int nPlace = g_oTranscript.lastIndexOf(QRegularExpression("^(! onProcess.*|[^!].*)"), -2) + 1;
        g_oTranscript.move(g_oTranscript.size() - 1, nPlace);
    }
}

void waitFor(const std::function<bool()>& isDone)
{
    if (!QTest::qWaitFor(isDone, 60000)) {
        note('!', "waited in vain");
    }
}

// Leaves out what comes on a good device, too, and puts the rest of what came of an action on one line.
void simplify(int nBegin)
{
    static const QRegularExpression s_oUnusual(
        "^(?!\\+|! (onProcess(Started|Finished exitCode: [01] .*Normal)|onReady.* \"Europe/Rome\"$|"
        "\"64\" \"377\"|\"(\\\\.|[^\"\\\\])*\"?$))");
    const QString strOutcome = g_oTranscript.mid(nBegin).filter(s_oUnusual).join(' ');
    g_oTranscript = g_oTranscript.mid(0, nBegin);
    if (strOutcome.isEmpty()) {
        return;
    }
    if (g_oTranscript.last().size() + strOutcome.size() < 108) {
        g_oTranscript.last() += " => " + strOutcome;
    } else {
        g_oTranscript += "=> " + strOutcome;
    }
}

} // namespace

// The clocks, in place of the real ones.
extern "C" {
int __real_open(const char* szPath, int nFlags, mode_t nMode);
int __real_ioctl(int nDescriptor, unsigned long nRequest, void* pArgument);
int __real_close(int nDescriptor);

int __wrap_settimeofday(const timeval* pTime, const void* pZone)
{
    const QString strTime = QStringLiteral("settimeofday %1 %2 ").arg(pTime->tv_sec).arg(pTime->tv_usec);
    note('#', strTime + (pZone ? "zone" : "null"));
    errno = EPERM;
    return g_strClock == "refused" ? -1 : 0;
}

int __wrap_open(const char* szPath, int nFlags, mode_t nMode)
{
    if (!QByteArray(szPath).endsWith("/rtc")) {
        return __real_open(szPath, nFlags, nMode);
    }
    note('#', QStringLiteral("open %1 %2").arg(szPath).arg((nFlags & O_ACCMODE) == O_WRONLY));
    errno = ENOENT;
    const QString strRTC = g_strClock == "none" ? "" : g_strClock == "misc" ? "/dev/misc/rtc" : "/dev/rtc";
    return g_nRTC = szPath == strRTC ? __real_open("/dev/null", O_WRONLY, 0) : -1;
}

int __wrap_ioctl(int nDescriptor, unsigned long nRequest, void* pArgument)
{
    if (nRequest != 0x4024700A) {
        return __real_ioctl(nDescriptor, nRequest, pArgument);
    }
    const auto* pFields = static_cast<const int*>(pArgument); // nine numbers
    QString strFields;
    for (int i = 0; i < 9; ++i) {
        strFields += ' ' + QString::number(pFields[i]);
    }
    note('#', QStringLiteral("ioctl %1:").arg(nDescriptor == g_nRTC) + strFields);
    errno = nDescriptor < 0 ? EBADF : EINVAL;
    return nDescriptor < 0 || g_strClock == "stuck" ? -1 : 0;
}

int __wrap_close(int nDescriptor)
{
    if (nDescriptor == g_nRTC) {
        note('#', QStringLiteral("close %1").arg(nDescriptor < 0 ? "nothing" : "RTC"));
    }
    return __real_close(nDescriptor);
}

void __wrap_perror(const char* szText)
{
    note('!', QStringLiteral("%1: %2").arg(szText, strerror(errno)));
}
}

// The dialog on a simulated device. scenarios.txt tells what is done to both and what comes of it.
class DateTimeDialogTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QVERIFY(m_oBus.start() && m_oSimulator.start(m_oBus));
        qputenv("DBUS_SYSTEM_BUS_ADDRESS", m_oBus.address().toUtf8());
        QVERIFY(OVIKPlatform::getInstance()->Init());
    }

    void plays_data()
    {
        QTest::addColumn<QStringList>("oLines");
        QFile oFile(QFINDTESTDATA("scenarios.txt"));
        QVERIFY(oFile.open(QIODevice::ReadOnly));
        const QStringList oScenarios = QString::fromUtf8(oFile.readAll()).split("\n[");
        for (const QString& strScenario : oScenarios.mid(1)) {
            QStringList oLines = strScenario.split('\n', Qt::SkipEmptyParts);
            const QString strName = oLines.takeFirst().chopped(1);
            QTest::newRow(qPrintable(strName)) << oLines;
        }
    }

    void plays()
    {
        QFETCH(QStringList, oLines);
        g_oTranscript.clear();
        g_strClock.clear();
        runInShell("fnDevice");
        OVIKPlatform::getInstance()->restartNTPDService(false);
        takeCalls();
        g_oTranscript.clear();
        QFile::remove("/tmp/commands");
        const QtMessageHandler pHandler = qInstallMessageHandler(noteMessage);
        for (const QString& strLine : qAsConst(oLines)) {
            if (!QString("=!#>|+").contains(strLine[0])) {
                play(strLine.section(" => ", 0, 0));
            }
        }
        qInstallMessageHandler(pHandler);
        if (g_oTranscript != oLines) {
            QFAIL(qPrintable("Came out as:\n" + g_oTranscript.join('\n')));
        }
    }

    void cleanup() { m_pDialog.reset(); }

private:
    void play(const QString& strLine)
    {
        g_oTranscript += strLine;
        const int nBegin = g_oTranscript.size();
        m_strArgument = strLine.section(' ', 1);
        for (const QString& strAction : m_oSequences.value(strLine.section(' ', 0, 0), {strLine})) {
            m_oActions.value(strAction.section(' ', 0, 0))(strAction.contains(' ') ? strAction.section(' ', 1)
                                                                                   : m_strArgument);
        }
        if (QTest::currentDataTag() != QByteArray("in full")) {
            simplify(nBegin);
        }
    }

    static void runInShell(const QString& strCommand, const QString& strArgument = QString())
    {
        ChildProcess oShell;
        oShell.start("bash",
                     {"-c", ". '" + QFINDTESTDATA("device.sh") + "'; " + strCommand, "bash", strArgument});
        if (!oShell.waitForFinished(20000)) {
            note('!', "the command hangs");
        }
        for (const QString& strLine : QString::fromUtf8(oShell.readAll()).split('\n', Qt::SkipEmptyParts)) {
            note('|', strLine);
        }
    }

    bool isIdle() const
    {
        const auto oAll = m_pDialog->findChildren<QProcess*>();
        return std::all_of(oAll.begin(), oAll.end(),
                           [](const QProcess* p) { return p->state() == QProcess::NotRunning; });
    }

    void awaitIdle()
    {
        waitFor([this] { return isIdle(); });
        QFile oCommands("/tmp/commands");
        if (oCommands.open(QIODevice::ReadOnly)) {
            for (const QString& strLine :
                 QString::fromUtf8(oCommands.readAll()).split('\n', Qt::SkipEmptyParts)) {
                note('+', strLine);
            }
            oCommands.remove();
        }
    }

    void type(const QString& strZone)
    {
        zones()->lineEdit()->selectAll();
        QTest::keyClicks(zones()->lineEdit(), strZone);
    }

    void look() const
    {
        const std::pair<const char*, const char*> aGood[] = {
            {"zones", "Europe/Rome of 3 | Asia/Tokyo | Europe/Rome | UTC"},
            {"ntpStatus_Label", "Last sync:64 secs ago"},
            {"autoUpdate_LineEdit", "192.168.1.1 (disabled)"}};
        for (const auto& [szName, szText] : aGood) {
            const QString strText = shown(szName);
            if (strText != szText) {
                note('|', strText);
            }
        }
    }

    QString shown(const QString& strName) const
    {
        if (strName == "zones") {
            QStringList oZones(zones()->currentText() + QString(" of %1").arg(zones()->count()));
            for (int i = 0; i < qMin(zones()->count(), 4); ++i) {
                oZones += zones()->itemText(i);
            }
            return oZones.join(" | ");
        }
        const QWidget* pWidget = strName.isEmpty() ? m_pDialog.get() : find<QWidget>(strName);
        const char* pProperty = pWidget->inherits("QAbstractButton") ? "checked"
                                : pWidget->inherits("QDateTimeEdit") ? "displayFormat"
                                : strName.isEmpty()                  ? "visible"
                                                                     : "text";
        const QString strText = pWidget->property(pProperty).toString();
        return (strText.isEmpty() ? "nothing" : strText) + (pWidget->isEnabled() ? "" : " (disabled)");
    }

    // The awaited call comes behind all those that were not awaited.
    QString takeCalls()
    {
        OVIKPlatform::getInstance()->isNTPDEnabled();
        QStringList oCalls = m_oSimulator.calls();
        oCalls.removeLast();
        m_oSimulator.steering().ClearCalls().waitForFinished();
        return oCalls.join(' ').remove("/ServiceManager ");
    }

    template<class Type>
    Type* find(const QString& strName = QString()) const
    {
        return m_pDialog->findChild<Type*>(strName);
    }
    QComboBox* zones() const { return find<QComboBox>("timezone_ComboBox"); }

    QString m_strArgument; // the rest of the line that is played
    // What the words of the scenarios do.
    const QHash<QString, std::function<void(const QString&)>> m_oActions = {
        {"$", [this](const QString& strCommand) { runInShell(strCommand, m_strArgument); }},
        {"clock", [](const QString& strFault) { g_strClock = strFault; }},
        {"ntpd", [](const QString&) { OVIKPlatform::getInstance()->restartNTPDService(true); }},
        {"calls", [this](const QString&) { note('>', takeCalls()); }},
        {"open", [this](const QString&) { (m_pDialog = std::make_unique<DateTimeDialog>(nullptr))->show(); }},
        {"await", [](const QString&) { waitFor([] { return QFile::exists("/tmp/hung"); }); }},
        {"idle", [this](const QString&) { awaitIdle(); }},
        {"look", [this](const QString&) { look(); }},
        {"show", [this](const QString& strName) { note('|', shown(strName)); }},
        {"click", [this](const QString& strName) { find<QAbstractButton>(strName)->click(); }},
        {"enter",
         [this](const QString& strName) { QTest::keyClick(find<QWidget>(strName), Qt::Key_Return); }},
        {"type", [this](const QString& strZone) { type(strZone); }},
        {"zone", [this](QString strZone) { zones()->setEditText(strZone.replace("\\n", "\n")); }},
        {"date",
         [this](const QString& strDate) {
             find<QDateTimeEdit>()->setDateTime(QDateTime::fromString(strDate, Qt::ISODate));
         }},
        {"destroy", [this](const QString&) { m_pDialog.reset(); }},
    };
    // Words for several actions; those without a text of their own get the rest of the line.
    const QHash<QString, QStringList> m_oSequences = {
        {"read", {"open", "idle", "look"}},
        {"zones", {"$ fnTool kadconfig-gen-timezones.sh \"$1\"", "open", "idle", "look"}},
        {"peer", {"$ fnTool ntpq \"echo; echo; echo '$1'\"", "open", "idle", "look"}},
        {"settings", {"$ printf %b \"$1\" >/etc/kadconfig/datetime.json", "open", "idle", "look"}},
        {"apply", {"click applyButton", "idle"}},
        {"applyDate", {"date", "click applyButton", "idle"}},
        {"applyZone", {"zone", "click applyButton", "idle", "$ fnState"}},
    };
    PrivateBus m_oBus;
    SimulatorProcess m_oSimulator;
    std::unique_ptr<DateTimeDialog> m_pDialog;
};

QTEST_MAIN(DateTimeDialogTest)
#include "tst_datetimedialog.moc"
