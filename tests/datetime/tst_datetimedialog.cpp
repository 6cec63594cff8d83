#include "datetime/datetimedialog.h"
#include "platform/ovikplatform.h"
#include "support/simulatorprocess.h"

#include <QComboBox>
#include <QCryptographicHash>
#include <QDateTimeEdit>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QTest>

#include <cerrno>
#include <cstdarg>
#include <cstring>
#include <fcntl.h>
#include <linux/rtc.h>
#include <sys/time.h>

namespace {

QStringList g_oTranscript;
QString g_strClock; // what is wrong with the clocks
int g_nRTC = -1;

void note(QChar cKind, const QString& strText)
{
    g_oTranscript += cKind + QStringLiteral(" ") + strText.left(500);
}

void noteMessage(QtMsgType /*eType*/, const QMessageLogContext& /*oContext*/, const QString& strText)
{
    static const QRegularExpression s_oWithId("^(onProcessStarted|onProcessError).* ");
    const QString strStart = s_oWithId.match(strText).captured();
    note('!', strStart.isEmpty() ? strText : strStart + "ID");
    // The output of a process may overtake the news of its start.
    if (strText.startsWith("onProcessStarted")) {
        int nPlace = g_oTranscript.lastIndexOf(QRegularExpression("^(! onProcess.*|[^!].*)"), -2) + 1;
        g_oTranscript.move(g_oTranscript.size() - 1, nPlace);
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
    note(
        '#',
        QStringLiteral("settimeofday %1 %2 %3").arg(pTime->tv_sec).arg(pTime->tv_usec).arg(pZone == nullptr));
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
    const bool bThere =
        g_strClock != "none" && g_strClock != (strlen(szPath) == strlen("/dev/rtc") ? "misc" : "");
    return g_nRTC = bThere ? __real_open("/dev/null", O_WRONLY, 0) : -1;
}

int __wrap_ioctl(int nDescriptor, unsigned long nRequest, void* pArgument)
{
    if (nRequest != 0x4024700A) {
        return __real_ioctl(nDescriptor, nRequest, pArgument);
    }
    const auto* p = static_cast<const rtc_time*>(pArgument);
    QStringList oFields;
    for (int n : {p->tm_sec, p->tm_min, p->tm_hour, p->tm_mday, p->tm_mon, p->tm_year, p->tm_wday, p->tm_yday,
                  p->tm_isdst}) {
        oFields += QString::number(n);
    }
    note('#', QStringLiteral("ioctl %1 ").arg(nDescriptor == g_nRTC) + oFields.join(' '));
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
    void initTestCase();
    void plays_data();
    void plays();
    void cleanup();

private:
    void play(const QString& strLine);
    void playOnDialog(const QString& strAction, const QString& strArgument);
    static void runInShell(const QString& strCommand);
    void awaitIdle();
    void noteCalls();
    QString shown(const QString& strName) const;
    template<class Type>
    Type* find(const QString& strName) const
    {
        return m_pDialog->findChild<Type*>(strName);
    }

    PrivateBus m_oBus;
    SimulatorProcess m_oSimulator;
    std::unique_ptr<DateTimeDialog> m_pDialog;
};

void DateTimeDialogTest::initTestCase()
{
    QVERIFY(m_oBus.start() && m_oSimulator.start(m_oBus));
    qputenv("DBUS_SYSTEM_BUS_ADDRESS", m_oBus.address().toUtf8());
    QVERIFY(OVIKPlatform::getInstance()->Init());
}

// A name in brackets begins a scenario; "in full" in it has the processes and their commands noted, too.
void DateTimeDialogTest::plays_data()
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

void DateTimeDialogTest::plays()
{
    QFETCH(QStringList, oLines);
    g_oTranscript.clear();
    g_strClock.clear();
    runInShell("fnDevice");
    OVIKPlatform::getInstance()->restartNTPDService(false);
    noteCalls();
    g_oTranscript.clear();
    QFile::remove("/tmp/commands");
    const QtMessageHandler pHandler = qInstallMessageHandler(noteMessage);
        for (const QString& strLine : qAsConst(oLines)) {
        if (!QString("!#>|+").contains(strLine[0])) {
            g_oTranscript += strLine;
            play(strLine);
        }
    }
    qInstallMessageHandler(pHandler);
    if (!QByteArray(QTest::currentDataTag()).contains("in full")) {
        g_oTranscript = g_oTranscript.filter(QRegularExpression("^(?!\\+|! onProcess(Started|Finished))"));
    }
    if (g_oTranscript != oLines) {
        QFAIL(qPrintable("Came out as:\n" + g_oTranscript.join('\n')));
    }
}

void DateTimeDialogTest::cleanup()
{
    m_pDialog.reset();
}

void DateTimeDialogTest::play(const QString& strLine)
{
    const QString strAction = strLine.section(' ', 0, 0);
    const QString strArgument = strLine.section(' ', 1);
    if (strAction == "$") {
        runInShell(strArgument);
    } else if (strAction == "clock") {
        g_strClock = strArgument;
    } else if (strAction == "ntpd") {
        OVIKPlatform::getInstance()->restartNTPDService(true);
    } else if (strAction == "calls") {
        noteCalls();
    } else if (strAction == "open" || strAction == "begin") {
        m_pDialog = std::make_unique<DateTimeDialog>(nullptr);
        m_pDialog->show();
        strAction == "open" ? awaitIdle() : void();
    } else {
        playOnDialog(strAction, QString(strArgument).replace("\\n", "\n"));
    }
}

void DateTimeDialogTest::playOnDialog(const QString& strAction, const QString& strArgument)
{
    if (strAction == "apply" || strAction == "click") {
        find<QPushButton>("applyButton")->click();
        strAction == "apply" ? awaitIdle() : void();
    } else if (strAction == "await") {
        QVERIFY(QTest::qWaitFor([] { return QFile::exists("/tmp/hung"); }, 60000));
    } else if (strAction == "destroy") {
        m_pDialog.reset();
        QTest::qWait(0);
    } else if (strAction == "close") {
        find<QPushButton>("closeButton")->click();
        note('|', m_pDialog->isVisible() ? "still there" : "closed");
    } else if (strAction == "type") {
        find<QComboBox>("timezone_ComboBox")->lineEdit()->selectAll();
        QTest::keyClicks(find<QComboBox>("timezone_ComboBox")->lineEdit(), strArgument);
    } else if (strAction == "zone") {
        find<QComboBox>("timezone_ComboBox")->setEditText(strArgument);
    } else if (strAction == "date") {
        find<QDateTimeEdit>("currentDate_DateEdit")
            ->setDateTime(QDateTime::fromString(strArgument, Qt::ISODate));
    } else if (strAction == "tick") {
        find<QAbstractButton>("autoUpdate_CheckBox")->click();
    } else if (strAction == "enter") {
        QTest::keyClick(find<QWidget>(strArgument), Qt::Key_Return);
    } else if (strAction == "idle") {
        awaitIdle();
    } else {
        note('|', shown(strArgument));
    }
}

void DateTimeDialogTest::runInShell(const QString& strCommand)
{
    ChildProcess oShell;
    oShell.start("bash", {"-c", ". '" + QFINDTESTDATA("device.sh") + "'; " + strCommand});
    oShell.waitForFinished(60000);
    for (const QString& strLine : QString::fromUtf8(oShell.readAll()).split('\n', Qt::SkipEmptyParts)) {
        note('|', strLine);
    }
}

void DateTimeDialogTest::awaitIdle()
{
    const auto isIdle = [this] {
        for (const QProcess* pProcess : m_pDialog->findChildren<QProcess*>()) {
            if (pProcess->state() != QProcess::NotRunning) {
                return false;
            }
        }
        return true;
    };
    if (!QTest::qWaitFor(isIdle, 60000)) {
        note('!', "not idle");
    }
    QFile oCommands("/tmp/commands");
    if (oCommands.open(QIODevice::ReadOnly)) {
        for (const QString& strLine :
             QString::fromUtf8(oCommands.readAll()).split('\n', Qt::SkipEmptyParts)) {
            note('+', strLine);
        }
        oCommands.remove();
    }
}

// The awaited call comes behind all those that were not awaited.
void DateTimeDialogTest::noteCalls()
{
    OVIKPlatform::getInstance()->isNTPDEnabled();
    const QStringList oCalls = m_oSimulator.calls();
    for (const QString& strCall : oCalls.mid(0, oCalls.size() - 1)) {
        note('>', strCall);
    }
    m_oSimulator.steering().ClearCalls().waitForFinished();
}

QString DateTimeDialogTest::shown(const QString& strName) const
{
    if (strName.startsWith(":/")) {
        QFile oFile(strName);
        const QByteArray oBytes = oFile.open(QIODevice::ReadOnly) ? oFile.readAll() : QByteArray();
        return QString::number(oBytes.size()) + ' ' +
               QCryptographicHash::hash(oBytes, QCryptographicHash::Sha256).toHex();
    }
    if (strName == "zones") {
        const auto* pZones = find<QComboBox>("timezone_ComboBox");
        QStringList oZones;
        for (int i = 0; i < qMin(pZones->count(), 8); ++i) {
            oZones += pZones->itemText(i);
        }
        return QStringLiteral("%1 of %2: %3")
            .arg(pZones->currentText())
            .arg(pZones->count())
            .arg(oZones.join('|'));
    }
    if (const auto* pLabel = find<QLabel>(strName)) {
        return pLabel->text();
    }
    const auto* pWidget = find<QWidget>(strName);
    const QString strState = pWidget->isEnabled() ? " on" : " off";
    const auto* pField = qobject_cast<const QLineEdit*>(pWidget);
    return (pField ? pField->text() : pWidget->property("checked").toString()) + strState;
}

QTEST_MAIN(DateTimeDialogTest)
#include "tst_datetimedialog.moc"
