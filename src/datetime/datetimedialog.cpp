#include "datetime/datetimedialog.h"

#include "datetime/datetimesettings.h"
#include "datetime/ntpconfiguration.h"
#include "datetime/systemclock.h"
#include "datetime/timezones.h"
#include "datetime/toolprocess.h"
#include "platform/ovikplatform.h"
#include "touch/busymark.h"
#include "ui_datetimedialog.h"

#include <QDebug>
#include <QLineEdit>

namespace {

constexpr char s_szDefaultServer[] = TARNIXUI_NTP_SERVER;
constexpr char s_szSettingsFile[] = "/etc/kadconfig/datetime.json";

bool hasZones(const QComboBox& oZones)
{
    for (int i = 0; i < oZones.count(); ++i) {
        if (!oZones.itemText(i).isEmpty()) {
            return true;
        }
    }
    return false; // a failing generator may print one empty name
}

} // namespace

DateTimeDialog::DateTimeDialog(QWidget* pParent)
    : QDialog(pParent), ui(new Ui_DateTimeDialog), m_strAutoUpdateAddress(s_szDefaultServer)
{
    ui->setupUi(this);
    m_pBusyMark = new BusyMark(ui->applyButton);
    setWindowTitle(tr("Date & Time"));
    setWindowFlags(windowFlags() & ~(Qt::WindowMinimizeButtonHint | Qt::WindowMaximizeButtonHint));
    ui->autoUpdate_LineEdit->setText(m_strAutoUpdateAddress);

    connect(ui->autoUpdate_CheckBox, SIGNAL(toggled(bool)), this, SLOT(onAutoUpdateChecked(bool)));
    connect(ui->applyButton, SIGNAL(clicked()), this, SLOT(onApplyClicked()));
    connect(ui->closeButton, SIGNAL(clicked()), this, SLOT(reject()));

    ui->timezone_ComboBox->setEditable(true);
    // On-screen keyboards ask the line edit.
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
    m_pBusyMark->start();
    saveFromUI();
}

void DateTimeDialog::saveFromUI()
{
    setTimeZone();
}

void DateTimeDialog::setTimeZone()
{
    m_strCurreTimeZone = ui->timezone_ComboBox->currentText();
    if (m_strCurreTimeZone.trimmed().isEmpty()) {
        destroyProcess(); // Apply ends what is still being read, as it does with a zone
        saveAutoUpdateOrDateTime();
        return;
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
    m_strPeer.clear();
    auto* pTool = new ToolProcess(this);
    m_pProcess = pTool;
    connect(m_pProcess, SIGNAL(started()), this, SLOT(onProcessStarted()));
    connect(m_pProcess, SIGNAL(errorOccurred(QProcess::ProcessError)), this,
            SLOT(onProcessError(QProcess::ProcessError)));
    connect(m_pProcess, SIGNAL(stateChanged(QProcess::ProcessState)), this,
            SLOT(onProcessStateChanged(QProcess::ProcessState)));
    connect(m_pProcess, SIGNAL(finished(int, QProcess::ExitStatus)), this,
            SLOT(onProcessFinished(int, QProcess::ExitStatus)));
    connect(m_pProcess, SIGNAL(readyReadStandardOutput()), this, SLOT(onReadyReadStandardOutput()));
    platformtools::start(*pTool, eType, m_strCurreTimeZone);
}

void DateTimeDialog::destroyProcess()
{
    if (!m_pProcess) {
        return;
    }
    // A killed process reports its end at once; it must not be mistaken for the end of the next one.
    disconnect(m_pProcess, nullptr, this, nullptr);
    static_cast<ToolProcess*>(m_pProcess.data())->end();
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
    if (eError == QProcess::Crashed) {
        return; // finished() follows and goes on
    }
    m_pBusyMark->finish(false);
    if (m_eProcessType == eProcessType_GetTimeZoneList && m_strCurreTimeZone.isEmpty()) {
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
    const QString strPiece = static_cast<ToolProcess*>(m_pProcess.data())->takeText();
    if (strPiece.isEmpty()) {
        return;
    }
    switch (m_eProcessType) {
    case eProcessType_GetTimeZoneList:
        m_strProcessOutput += strPiece;
        break;
    case eProcessType_GetCurrentTimeZone:
        m_strCurreTimeZone = (m_strCurreTimeZone + strPiece).trimmed();
        qWarning() << "onReadyReadStandardOutput"
                   << "Current timezone" << m_strCurreTimeZone;
        break;
    case eProcessType_GetNTPDateTimeStatus:
        m_strPeer += strPiece;
        if (ntpstatus::readPeer(m_strPeer, m_oNTPInfo)) {
            qWarning() << m_oNTPInfo.m_strLastUpdate << m_oNTPInfo.m_strStatus;
        }
        break;
    default:
        break;
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
        if (!platformtools::isTimeZoneInForce(m_strCurreTimeZone)) {
            m_pBusyMark->fail();
        }
        saveAutoUpdateOrDateTime();
        break;
    case eProcessType_GetNTPDateTimeStatus:
        setNTPStatusOnUI();
        break;
    case eProcessType_SetNTPSettings:
        saveNTPConfiguration(nExitCode == 0 && eExitStatus == QProcess::NormalExit);
        break;
    case eProcessType_SetCurrentDateTime:
        break;
    }
}

void DateTimeDialog::showTimeZones()
{
    const QString strTyped = ui->timezone_ComboBox->currentText();
    ui->timezone_ComboBox->addItems(timezones::fromOutput(m_strProcessOutput));
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
    } else if (!hasZones(*ui->timezone_ComboBox) && ui->timezone_ComboBox->currentText().isEmpty()) {
        ui->timezone_ComboBox->setEditText(m_strCurreTimeZone);
    }
}

void DateTimeDialog::saveAutoUpdateOrDateTime()
{
    if (ui->autoUpdate_CheckBox->isChecked()) {
        saveNTPSettings();
        return;
    }
    restartNTPDServer();
    saveDateTime();
}

void DateTimeDialog::saveDateTime()
{
    const QDateTime oShown = ui->currentDate_DateEdit->dateTime();
    // Compares the texts shown: an instant that occurs twice because of a clock change does not equal itself.
    const bool bChanged =
        oShown.date() != m_oInitialDateTime.date() || oShown.time() != m_oInitialDateTime.time();
    if (bChanged && !writeLocalTime(oShown.date(), oShown.time())) {
        qWarning() << "saveDateTime"
                   << "failed";
        m_pBusyMark->fail();
    }
}

// Kept, see docs/compatibility.md
void DateTimeDialog::saveNTPSettings()
{
    m_strAutoUpdateAddress = ui->autoUpdate_LineEdit->text();
    runProcess(eProcessType_SetNTPSettings);
}

void DateTimeDialog::saveNTPConfiguration(bool bGenerated)
{
    if (!ntpconfiguration::isGenerated()) {
        m_pBusyMark->finish(false);
        return;
    }
    if (!ntpconfiguration::install()) {
        m_pBusyMark->fail();
    } else if (!bGenerated) {
        qWarning() << "saveNTPSettings failed: the generator failed";
        m_pBusyMark->fail();
    }
    restartNTPDServer();
}

void DateTimeDialog::restartNTPDServer()
{
    OVIKPlatform* pPlatform = OVIKPlatform::getInstance();
    pPlatform->restartNTPDService(ui->autoUpdate_CheckBox->isChecked());
    m_pBusyMark->finishWith(pPlatform->watchReplies());
}

void DateTimeDialog::setNTPStatusOnUI()
{
    ui->ntpStatus_Label->setText(ntpstatus::text(m_oNTPInfo));
    m_strAutoUpdateAddress = s_szDefaultServer;
    QString strSettings;
    QString strServer;
    if (datetimesettings::readFile(s_szSettingsFile, strSettings) &&
        getAutoUpdateAddressFromJSON(strSettings, strServer)) {
        m_strAutoUpdateAddress = strServer;
    }
    ui->autoUpdate_LineEdit->setText(m_strAutoUpdateAddress);
}

bool DateTimeDialog::getAutoUpdateAddressFromJSON(const QString& json, QString& address)
{
    return datetimesettings::serverFromText(json, address);
}

bool DateTimeDialog::getAutoUpdateAddressFromJSONObject(const json::Object& root, QString& address)
{
    return datetimesettings::serverFromObject(root, address);
}
