#pragma once

#include "datetime/ntpstatus.h"
#include "datetime/platformtools.h"
#include "json/elements.h"

#include <QDateTime>
#include <QDialog>
#include <QPointer>
#include <QProcess>

class BusyMark;
class Ui_DateTimeDialog;

/**
 * The dialog that sets the time zone, the date and time, and whether the time comes from an NTP server.
 *
 * Its values come from tools of the platform. They run one after the other as child processes, without
 * blocking, and end with the dialog. Apply sets the time zone first, then either the clocks (and the NTP
 * daemon off) or the NTP daemon's configuration (and the daemon on); the dialog stays open. Failures are
 * logged as warnings and never shown. docs/date-and-time.md lists the tools and files.
 */
class DateTimeDialog : public QDialog
{
    Q_OBJECT

public:
    /**
     * Builds the dialog and starts reading; the caller shows it.
     *
     * Asks the platform service whether the NTP daemon is enabled and waits for the reply. Without one,
     * for example because OVIKPlatform::Init() has not found the service, the daemon counts as not enabled.
     */
    explicit DateTimeDialog(QWidget* pParent);
    /** Kills the tool that is still running, with all that it has started. */
    ~DateTimeDialog() override;

private slots:
    void onAutoUpdateChecked(bool bChecked);
    void onApplyClicked();
    void onProcessStarted();
    void onProcessError(QProcess::ProcessError eError);
    void onProcessFinished(int nExitCode, QProcess::ExitStatus eExitStatus);
    void onProcessStateChanged(QProcess::ProcessState eState);
    void onReadyReadStandardOutput();

private:
    void updateUI();
    void runProcess(eProcessType eType);
    void destroyProcess();
    void updateCurrentTimezone();
    void setTimeZone();
    void saveFromUI();
    void saveDateTime();
    void saveNTPSettings();
    void setNTPStatusOnUI();
    static bool getAutoUpdateAddressFromJSON(const QString& json, QString& address);
    static bool getAutoUpdateAddressFromJSONObject(const json::Object& root, QString& address);
    void restartNTPDServer();

    void saveAutoUpdateOrDateTime();
    void saveNTPConfiguration(bool bGenerated);
    void showTimeZones();
    void selectCurrentTimezone();

    Ui_DateTimeDialog* ui;
    QString m_strAutoUpdateAddress;
    QPointer<QProcess> m_pProcess;
    QString m_strProcessOutput;
    eProcessType m_eProcessType = eProcessType_GetTimeZoneList;
    QString m_strCurreTimeZone;
    sNTPInfo m_oNTPInfo;
    QDateTime m_oInitialDateTime;
    QString m_strPeer;               // the line of the NTP daemon's first peer, as far as read
    BusyMark* m_pBusyMark = nullptr; // on Apply, until the last tool has ended and the service has replied
};
