#pragma once

#include "network/networkinterfaceaccess.h"
#include "panel/applicationrows.h"
#include "panel/interfaceblock.h"
#include "panel/interfacesettings.h"
#include "panel/panelstyle.h"

#include <QList>
#include <QMap>
#include <QPointer>
#include <QProcess>
#include <QTimer>
#include <QWidget>

class DateTimeDialog;
class NetworkSettingsDialog;
class QDialog;
class RowTaps;
class Ui_MorvaWidget;
struct PanelInfo;

/**
 * The panel: the one full-screen window of the device, with a banner, a main text and rows of captions and
 * values.
 *
 * It builds the rows, shows values and receives taps. The command channel (Console), which it owns, fills
 * most values; the clock and the addresses of the network interfaces it updates itself. A tap opens a dialog
 * or starts the configuration application (launchConfigurationApp()). The first paint schedules the start-up
 * notice (writeStartNotice()).
 */
class TarnixUI : public QWidget, public NetworkInterfaceAccess
{
    Q_OBJECT

public:
    /** Builds the panel for the default screen and, as the last step, opens the command channel. */
    explicit TarnixUI(QWidget* pParent = nullptr);
    ~TarnixUI() override;

    /** Shows the text as device type; see showText(). */
    void setDeviceType(const QString& strText);

    /** Blanks the ident value; ignores the text. */
    void setIdentNo(const QString& strText);

    /** Shows the text as target version; see showText(). */
    void setTargetVersion(const QString& strText);

    /**
     * Shows the rows of a number of applications: the fixed ones and nCount - 1 extra ones, which are created
     * when they are first needed.
     * @param nCount number of loaded applications; below 1 is ignored, above 1001 counts as 1001, because the
     *               three digits of a command's index reach no further
     */
    void setNumberOfAppsinUI(int nCount);

    /**
     * Shows the name of an application; see showText().
     * @param nIndex 0 is the fixed row, any other the extra row with that key, counted from 0; a key without
     * a row is logged
     */
    void setApplicationName(const QString& strText, int nIndex);

    /**
     * Shows the PLC status of an application; see showText().
     * @param nIndex as for setApplicationName()
     */
    void setPLCStatus(const QString& strText, int nIndex);

    /** Returns the details of the interfaces that the panel shows: getSystemNetworkInterfaceDetails(). */
    QList<sNetworkInterfaceDetails> getNetworkInterfacesList();

    /** Returns InterfaceSettings::readAll(). */
    QList<sNetworkInterfaceDetails> getSystemNetworkInterfaceDetails();

    /** Returns InterfaceSettings::testDetails(). */
    static QList<sNetworkInterfaceDetails> getTestInterfaceDetails();

    /** Watches the rows for taps; a tap opens a dialog from the event loop. See QObject::eventFilter. */
    bool eventFilter(QObject* pWatched, QEvent* pEvent) override;

protected:
    /** Paints the panel; the first paint of the process schedules the start-up notice. */
    void paintEvent(QPaintEvent* pEvent) override;

    /** Refuses to close: only the runtime ends the panel, not a window manager. */
    void closeEvent(QCloseEvent* pEvent) override;

public:
    /** Returns InterfaceSettings::read() of the named interface. */
    sNetworkInterfaceDetails getInterfaceDetails(const QString& strName) final;

    /** Returns InterfaceSettings::write() of the record. */
    bool setInterfaceDetails(const sNetworkInterfaceDetails& oDetails) final;

    /** Returns OVIKPlatform::watchReplies(). */
    QObject* watchReplies() final;

private slots:
    void onSysTimeTimerTimeOut();
    void onSystemDateTimeRequested();
    void onNetworkSettingsRequested(QObject* pWatched);
    void onNetworkTimerTimedOut();
    void onToolbuttonClicked();
    void onProcessError(QProcess::ProcessError eError);
    void onProcessStarted();
    void onProcessFinished(int nExitCode);
    void writeToNamedPipe();

private:
    void populateUI();
    void populateRow(QLabel* pCaption, const QString& strCaption, QLabel* pValue, const QString& strValue);
    void watchTaps(QLabel* pLabel, QList<QObject*>& oWidgetList);
    void insertEthernetDetailsIntoGUI(const sNetworkInterfaceDetails& oDetails, QWidget* pCaptionAnchor,
                                      QWidget* pValueAnchor);
    QLabel* createLabel(const QString& strText, eLabelType eType);
    void setInfoTextLabelStyle(QLabel* pLabel, eLabelType eType);
    const sAppStatusUIDetails* findAppRow(int nIndex) const;
    QString interfaceOf(const QObject* pValueLabel) const;
    void runDialog(QDialog* pDialog);
    void LaunchCtrlPanel();

    Ui_MorvaWidget* ui;
    QList<QObject*> m_oNetworkSettingsWidgetList;
    QList<QObject*> m_oSystemDateTimeWidgetList;
    PanelInfo* m_pPanelInfo;
    QTimer m_oSysTimeTimer;
    QPointer<QProcess> m_pShowCtrlPanel; // Kept, see docs/compatibility.md
    QTimer m_oTimer;
    QMap<QString, sNetworkInterfaceUIDetails> m_oNetworkInterfaceUIDetailsMap;
    QPointer<DateTimeDialog> m_pDateTimeDlg;
    QPointer<NetworkSettingsDialog> m_pNetworkDlg;
    QMap<int, sAppStatusUIDetails> m_oAppStatusUIMap;
    QString m_strDeviceName; // Kept, see docs/compatibility.md
    InterfaceSettings m_oInterfaceSettings;
    RowTaps* m_pRowTaps; // owned by the scroll area
};
