#include "datetime/datetimedialog.h"

#include "datetime/systemclock.h"
#include "datetime/toolprocess.h"
#include "platform/ovikplatform.h"
#include "ui_datetimedialog.h"
#include "json/reader.h"
#include "json/textbuffer.h"

#include <QDebug>
#include <QFile>
#include <QFileInfo>
#include <QLineEdit>
#include <QRegularExpression>
#include <limits>

namespace {

constexpr char s_szDefaultServer[] = TARNIXUI_NTP_SERVER;
constexpr char s_szTimeZoneGenerator[] = "/usr/bin/kadconfig-gen-timezones.sh";
constexpr char s_szTimeZoneFile[] = "/etc/timezone";
constexpr char s_szLocalTime[] = "/etc/localtime";
constexpr char s_szSettingsFile[] = "/etc/kadconfig/datetime.json";
constexpr char s_szGeneratedConfiguration[] = "/etc/kadconfig-ntp.conf";
constexpr char s_szNTPConfiguration[] = "/etc/ntp.conf";

// Far more than any device has.
constexpr int s_nMaxTimeZones = 256 * 1024;
constexpr int s_nMaxLine = 4096;
constexpr qint64 s_nMaxSettings = 1024LL * 1024;

constexpr int s_nWhenField = 4;
constexpr int s_nReachField = 6;
constexpr uint s_nNoTime = std::numeric_limits<uint>::max(); // of a date that the clock cannot have

QString scriptText(const char* szResource)
{
    QFile oFile(szResource);
    return oFile.open(QIODevice::ReadOnly | QIODevice::Text) ? QString(oFile.readAll()) : QString();
}

// What the shell takes as one word of its own, whatever the text is. The name of a zone stands as it is.
QString shellWord(const QString& strText)
{
    static const QRegularExpression s_oZoneName(QStringLiteral("\\A[A-Za-z0-9/_+.-]*\\z"));
    if (s_oZoneName.match(strText).hasMatch()) {
        return strText;
    }
    return '\'' + QString(strText).replace('\'', QLatin1String("'\\''")) + '\'';
}

QString textBetweenBrackets(const QString& strText)
{
    const int nBegin = strText.indexOf('[') + 1;
    const int nEnd = strText.indexOf(']');
    return strText.mid(nBegin, nEnd < nBegin ? -1 : nEnd - nBegin);
}

void replaceNTPConfiguration()
{
    if (QFile::exists(s_szNTPConfiguration)) {
        QFile::remove(s_szNTPConfiguration);
    }
    QFile::copy(s_szGeneratedConfiguration, s_szNTPConfiguration);
}

} // namespace

DateTimeDialog::DateTimeDialog(QWidget* pParent)
    : QDialog(pParent), ui(new Ui_DateTimeDialog), m_strAutoUpdateAddress(s_szDefaultServer)
{
    ui->setupUi(this);
    setWindowTitle(tr("Date & Time"));
    setWindowFlags(windowFlags() & ~(Qt::WindowMinimizeButtonHint | Qt::WindowMaximizeButtonHint));
    ui->autoUpdate_LineEdit->setText(m_strAutoUpdateAddress);

    connect(ui->autoUpdate_CheckBox, SIGNAL(toggled(bool)), this, SLOT(onAutoUpdateChecked(bool)));
    connect(ui->applyButton, SIGNAL(clicked()), this, SLOT(onApplyClicked()));
    connect(ui->closeButton, SIGNAL(clicked()), this, SLOT(reject()));

    ui->timezone_ComboBox->setEditable(true);
    // An on-screen keyboard asks the line edit.
    ui->timezone_ComboBox->lineEdit()->setInputMethodHints(ui->timezone_ComboBox->inputMethodHints());
    ui->timezone_ComboBox->setCompleter(nullptr); // it would turn typed text into another zone
    runProcess(eProcessType_GetTimeZoneList);
    ui->autoUpdate_CheckBox->setChecked(OVIKPlatform::getInstance()->isNTPDEnabled());
    m_oInitialDateTime = QDateTime::currentDateTime();
    ui->currentDate_DateEdit->setDateTime(m_oInitialDateTime);
    updateUI();
}

DateTimeDialog::~DateTimeDialog()
{
    destroyProcess();
    delete ui;
}

void DateTimeDialog::updateUI()
{
    const bool bAutomatic = ui->autoUpdate_CheckBox->isChecked();
    ui->currentDate_DateEdit->setEnabled(!bAutomatic);
    ui->autoUpdate_LineEdit->setEnabled(bAutomatic);
}

void DateTimeDialog::onAutoUpdateChecked(bool bChecked)
{
    Q_UNUSED(bChecked)
    updateUI();
}

void DateTimeDialog::onApplyClicked()
{
    saveFromUI();
}

void DateTimeDialog::saveFromUI()
{
    setTimeZone();
}

void DateTimeDialog::setTimeZone()
{
    m_strCurreTimeZone = ui->timezone_ComboBox->currentText();
    // An earlier name that led to a folder: the script would put its link into that.
    if (QFileInfo(s_szLocalTime).isDir()) {
        QFile::remove(s_szLocalTime);
    }
    runProcess(eProcessType_SetCurrentTimeZone);
}

void DateTimeDialog::updateCurrentTimezone()
{
    runProcess(eProcessType_GetCurrentTimeZone);
}

void DateTimeDialog::runProcess(eProcessType eType)
{
    m_eProcessType = eType;
    destroyProcess();
    m_pProcess = new ToolProcess(this);
    connect(m_pProcess, SIGNAL(started()), this, SLOT(onProcessStarted()));
    connect(m_pProcess, SIGNAL(error(QProcess::ProcessError)), this,
            SLOT(onProcessError(QProcess::ProcessError)));
    connect(m_pProcess, SIGNAL(stateChanged(QProcess::ProcessState)), this,
            SLOT(onProcessStateChanged(QProcess::ProcessState)));
    connect(m_pProcess, SIGNAL(finished(int, QProcess::ExitStatus)), this,
            SLOT(onProcessFinished(int, QProcess::ExitStatus)));
    connect(m_pProcess, SIGNAL(readyReadStandardOutput()), this, SLOT(onReadyReadStandardOutput()));
    startTool(eType);
}

void DateTimeDialog::startTool(eProcessType eType)
{
    switch (eType) {
    case eProcessType_GetTimeZoneList:
        m_pProcess->start(s_szTimeZoneGenerator, QStringList());
        break;
    case eProcessType_GetCurrentTimeZone:
        m_pProcess->start(QStringLiteral("cat"), {s_szTimeZoneFile});
        break;
    case eProcessType_SetCurrentTimeZone: {
        const QString strZone = shellWord(m_strCurreTimeZone.trimmed());
        // Both at once: one after the other would fill in a "%2" of the name, too, and break its quotes.
        startScript(scriptText(":/setTimeZone.sh").arg(strZone, strZone));
        break;
    }
    case eProcessType_GetNTPDateTimeStatus:
        m_strPeer.clear();
        startScript(scriptText(":/getNTPStatus.sh"));
        break;
    case eProcessType_SetNTPSettings:
        startScript(scriptText(":/setNTPSettings.sh"));
        break;
    case eProcessType_SetCurrentDateTime:
        break;
    }
}

void DateTimeDialog::startScript(const QString& strScript)
{
    if (!strScript.isEmpty()) {
        m_pProcess->start(QStringLiteral("/bin/sh"), {QStringLiteral("-c"), strScript});
    }
}

void DateTimeDialog::destroyProcess()
{
    if (!m_pProcess) {
        return;
    }
    // A killed process reports its end at once, which must not be taken for the end of the next one.
    disconnect(m_pProcess, nullptr, this, nullptr);
    if (m_pProcess->state() != QProcess::NotRunning) {
        m_pProcess->close();
        m_pProcess->kill();
    }
    m_pProcess->deleteLater();
    m_pProcess.clear();
}

void DateTimeDialog::onProcessStarted()
{
    if (!m_pProcess) {
        return;
    }
    qWarning() << "onProcessStarted"
               << "started program" << m_pProcess->processId();
}

void DateTimeDialog::onProcessError(QProcess::ProcessError eError)
{
    if (!m_pProcess) {
        return;
    }
    qWarning() << "onProcessError"
               << "Error: " << eError << m_pProcess->processId();
    // After a crash the process is finished as well, and that goes on.
    if (eError != QProcess::Crashed && m_eProcessType == eProcessType_GetTimeZoneList &&
        m_strCurreTimeZone.isEmpty()) {
        updateCurrentTimezone();
    }
}

void DateTimeDialog::onProcessStateChanged(QProcess::ProcessState eState)
{
    Q_UNUSED(eState)
}

void DateTimeDialog::onReadyReadStandardOutput()
{
    if (!m_pProcess) {
        return;
    }
    const QString strPiece = QString::fromLatin1(m_pProcess->readAllStandardOutput().constData());
    if (strPiece.isEmpty()) {
        return;
    }
    switch (m_eProcessType) {
    case eProcessType_GetTimeZoneList:
        append(m_strProcessOutput, strPiece, s_nMaxTimeZones);
        break;
    case eProcessType_GetCurrentTimeZone:
        append(m_strCurreTimeZone, strPiece, s_nMaxLine);
        m_strCurreTimeZone = m_strCurreTimeZone.trimmed();
        qWarning() << "onReadyReadStandardOutput"
                   << "Current timezone" << m_strCurreTimeZone;
        break;
    case eProcessType_GetNTPDateTimeStatus:
        append(m_strPeer, strPiece, s_nMaxLine);
        readNTPStatus();
        break;
    default:
        break;
    }
}

// A tool that writes without end is ended; what came first is used.
void DateTimeDialog::append(QString& strOutput, const QString& strPiece, int nMaxSize)
{
    strOutput += strPiece.leftRef(nMaxSize - strOutput.size());
    if (strOutput.size() == nMaxSize) {
        disconnect(m_pProcess, SIGNAL(readyReadStandardOutput()), this, nullptr);
        static_cast<ToolProcess*>(m_pProcess.data())->killGroup();
    }
}

void DateTimeDialog::onProcessFinished(int nExitCode, QProcess::ExitStatus eExitStatus)
{
    if (!m_pProcess) {
        return;
    }
    qWarning() << "onProcessFinished"
               << "exitCode:" << nExitCode << "exitStatus" << eExitStatus << m_pProcess->processId();
    switch (m_eProcessType) {
    case eProcessType_GetTimeZoneList:
        showTimeZones();
        updateCurrentTimezone();
        break;
    case eProcessType_GetCurrentTimeZone:
        selectCurrentTimezone();
        runProcess(eProcessType_GetNTPDateTimeStatus);
        break;
    case eProcessType_SetCurrentTimeZone:
        if (ui->autoUpdate_CheckBox->isChecked()) {
            saveNTPSettings();
            break;
        }
        OVIKPlatform::getInstance()->restartNTPDService(false);
        saveDateTime();
        break;
    case eProcessType_GetNTPDateTimeStatus:
        setNTPStatusOnUI();
        break;
    case eProcessType_SetNTPSettings:
        if (!QFile::exists(s_szGeneratedConfiguration)) {
            qWarning() << "File missing: " << s_szGeneratedConfiguration;
            break;
        }
        replaceNTPConfiguration();
        restartNTPDServer();
        break;
    case eProcessType_SetCurrentDateTime:
        break;
    }
}

void DateTimeDialog::showTimeZones()
{
    m_strProcessOutput = textBetweenBrackets(m_strProcessOutput);
    m_strProcessOutput.remove('\'');
    QStringList oZones = m_strProcessOutput.split(',');
    for (QString& strZone : oZones) {
        strZone = strZone.trimmed();
    }
    const QString strTyped = ui->timezone_ComboBox->currentText();
    ui->timezone_ComboBox->addItems(oZones);
    if (!strTyped.isEmpty()) {
        ui->timezone_ComboBox->setEditText(strTyped);
    }
}

void DateTimeDialog::selectCurrentTimezone()
{
    const int nIndex =
        ui->timezone_ComboBox->findText(m_strCurreTimeZone, Qt::MatchExactly | Qt::MatchCaseSensitive);
    if (nIndex >= 0) {
        ui->timezone_ComboBox->setCurrentIndex(nIndex);
    }
}

void DateTimeDialog::saveDateTime()
{
    const QDateTime oShown = ui->currentDate_DateEdit->dateTime();
    // Compares what was shown: an instant that a clock change lets pass twice would not equal itself.
    if (oShown.date() == m_oInitialDateTime.date() && oShown.time() == m_oInitialDateTime.time()) {
        return;
    }
    // Made anew, as the time zone may be another one now.
    const uint nSeconds = QDateTime(oShown.date(), oShown.time()).toTime_t();
    if (nSeconds == s_nNoTime || !writeCurrentTime(static_cast<long>(nSeconds))) {
        qWarning() << "saveDateTime"
                   << "failed";
    }
}

void DateTimeDialog::saveNTPSettings()
{
    m_strAutoUpdateAddress = ui->autoUpdate_LineEdit->text();
    runProcess(eProcessType_SetNTPSettings);
}

void DateTimeDialog::restartNTPDServer()
{
    OVIKPlatform::getInstance()->restartNTPDService(ui->autoUpdate_CheckBox->isChecked());
}

void DateTimeDialog::readNTPStatus()
{
    static const QRegularExpression s_oBlanks(QStringLiteral(" +"));
    const QStringList oFields = m_strPeer.trimmed().split(s_oBlanks);
    if (oFields.size() <= s_nReachField || oFields[s_nWhenField] == QLatin1String("-")) {
        return;
    }
    m_oNTPInfo.m_strLastUpdate = oFields[s_nWhenField];
    m_oNTPInfo.m_strStatus = oFields[s_nReachField];
    qWarning() << m_oNTPInfo.m_strLastUpdate << m_oNTPInfo.m_strStatus;
}

void DateTimeDialog::setNTPStatusOnUI()
{
    ui->ntpStatus_Label->setText(lastSyncText());
    readAutoUpdateAddress();
    ui->autoUpdate_LineEdit->setText(m_strAutoUpdateAddress);
}

// Minutes, too, are called seconds: required by the device's other software.
QString DateTimeDialog::lastSyncText() const
{
    const QString& strLast = m_oNTPInfo.m_strLastUpdate;
    if (strLast.isEmpty()) {
        return m_oNTPInfo.m_strStatus == QLatin1String("377") ? QString() : tr("Connection error");
    }
    if (strLast.endsWith('h')) {
        return tr("Last sync:%1 hours ago").arg(strLast);
    }
    if (strLast.endsWith('d')) {
        return tr("Last sync:%1 days ago").arg(strLast);
    }
    return tr("Last sync:%1 secs ago").arg(strLast);
}

void DateTimeDialog::readAutoUpdateAddress()
{
    m_strAutoUpdateAddress = s_szDefaultServer;
    QFile oFile(s_szSettingsFile);
    if (!oFile.exists()) {
        return;
    }
    // Anything but a file, such as a pipe, could let the opening wait.
    if (!QFileInfo(oFile).isFile() || !oFile.open(QIODevice::ReadOnly | QIODevice::Text)) {
        qWarning() << "datetime file missing:" << s_szSettingsFile;
        return;
    }
    const QString strText = QString::fromLatin1(oFile.read(s_nMaxSettings).constData());
    qWarning() << strText;
    QString strServer;
    if (getAutoUpdateAddressFromJSON(strText, strServer)) {
        m_strAutoUpdateAddress = strServer;
    }
}

// True also without a server in the document, which is then shown as empty: required by the device's other
// software.
bool DateTimeDialog::getAutoUpdateAddressFromJSON(const QString& json, QString& address)
{
    if (json.isEmpty()) {
        qWarning() << "Trying to parse empty datetime json!";
        return false;
    }
    try {
        const QByteArray oBytes = json.toLatin1();
        json::TextBuffer oBuffer({oBytes.constData(), std::size_t(oBytes.size())});
        std::istream oStream(&oBuffer);
        json::Object oRoot;
        json::Reader::Read(oRoot, oStream);
        getAutoUpdateAddressFromJSONObject(oRoot, address);
        return true;
    } catch (const json::Reader::ParseException& e) {
        qWarning() << "Parse error in datetime json" << e.what();
    } catch (const json::Reader::ScanException& e) {
        qWarning() << "Scan error in datetime json " << e.what();
    } catch (...) {
        qWarning() << "Unknown datetime json error ";
    }
    return false;
}

bool DateTimeDialog::getAutoUpdateAddressFromJSONObject(const json::Object& root, QString& address)
{
    const auto itNTP = root.Find("ntp");
    if (itNTP == root.End()) {
        qWarning() << "datetime json error: "
                   << "Could not find 'ntp' json object";
        return false;
    }
    const auto& oNTP = itNTP->element.CastTo<json::Object>();
    const auto itServer = oNTP.Find("server");
    if (itServer == oNTP.End()) {
        qWarning() << "datetime json error: "
                   << "Could not find 'server' entry";
        return false;
    }
    address = QString::fromStdString(itServer->element.CastTo<json::String>().Value());
    return true;
}
