#pragma once

#include "network/networkinterfaceaccess.h"

#include <QList>
#include <QMap>
#include <QPointer>
#include <QProcess>
#include <QScroller>
#include <QTimer>
#include <QWidget>

class DateTimeDialog;
class NetworkSettingsDialog;
class QBoxLayout;
class QDialog;
class QLabel;
class QLayout;
class Ui_MorvaWidget;
struct PanelInfo;

/** What a label of the panel is for. */
enum eLabelType {
    eType_Label = 0, /**< a caption, such as "PLC Status:" */
    eType_Form = 1   /**< a value, shown beside a caption */
};

/** The labels of one application beyond the first; all are owned by the widget tree. */
struct sAppStatusUIDetails
{
    QLabel* m_pAppNameLabel;  /**< caption of the application's name */
    QLabel* m_pAppFormLabel;  /**< the application's name */
    QLabel* m_pStatLabel;     /**< caption of the PLC status */
    QLabel* m_pStatFormLabel; /**< the PLC status */
};

/** The value labels of one network interface; all are owned by the widget tree. */
struct sNetworkInterfaceUIDetails
{
    QLabel* m_pIPAddressLabel;
    QLabel* m_pSubnetMaskLabel;
    QLabel* m_pStdGatewayLabel;
};

/**
 * The panel: the one full-screen window of the device, with a banner, a main text and rows of captions and
 * values.
 *
 * The command channel (Console), which it owns, fills the values; it keeps the clock and the
 * rows of the network interfaces itself, opens the dialogs for both, tells the runtime through
 * the named pipe "/tmp/tarnixUI" that it is on screen, and starts the platform's configuration application.
 */
class TarnixUI : public QWidget, public NetworkInterfaceAccess
{
    Q_OBJECT

public:
    /** Builds the panel for the default screen and, as the last step, opens the command channel. */
    explicit TarnixUI(QWidget* pParent = nullptr);
    ~TarnixUI() override;

    /**
     * Shows the text as device type. Every text from the runtime is shown as it stands, never as markup, and
     * of one longer than 65536 characters the beginning.
     */
    void setDeviceType(const QString& strText);

    /** Blanks the ident value, whatever the text is. */
    void setIdentNo(const QString& strText);

    /** Shows the text as version of the runtime's target. */
    void setTargetVersion(const QString& strText);

    /**
     * Shows the rows of a number of applications: the fixed ones and nCount - 1 extra ones, made on demand.
     * @param nCount number of loaded applications; below 1 nothing happens, above 1001 it counts as 1001: the
     *               three digits of a command's index reach no further
     */
    void setNumberOfAppsinUI(int nCount);

    /**
     * Shows the name of an application.
     * @param nIndex 0 is the fixed row, any other the extra row with that key; an unknown one is logged
     */
    void setApplicationName(const QString& strText, int nIndex);

    /**
     * Shows the PLC status of an application as it was sent.
     * @param nIndex 0 is the fixed row, any other the extra row with that key; an unknown one is logged
     */
    void setPLCStatus(const QString& strText, int nIndex);

    /** Returns the details of the interfaces that the panel shows: getSystemNetworkInterfaceDetails(). */
    QList<sNetworkInterfaceDetails> getNetworkInterfacesList();

    /**
     * Returns the details of every interface that the operating system reports, in its order, without
     * loopback and CAN. Each is read with getInterfaceDetails(), but always has its name.
     */
    QList<sNetworkInterfaceDetails> getSystemNetworkInterfaceDetails();

    /**
     * Reads the current settings of an interface from the platform service (its getInterfaceConfig call).
     * @return empty texts if the platform client is not connected; after an error reply, and before the first
     * answer, what was read last, possibly of another interface (required by the device's other software)
     */
    sNetworkInterfaceDetails getInterfaceDetails(const QString& strName) final;

    /**
     * Sends the addresses and the DHCP flag of the record to the platform service, for the interface that the
     * record names (its calls getInterfaceConfig, setInterfaceConfigJSON and applyNewConfiguration). A text
     * that is no IPv4 address counts as 0.0.0.0.
     * @return what OVIKPlatform::SetNetworkSettings() returns; true also if the interface could not be
     * selected (required by the device's other software)
     */
    bool setInterfaceDetails(const sNetworkInterfaceDetails& oDetails) override;

    /** Returns three interfaces that do not exist, eth0 to eth2, for development. */
    static QList<sNetworkInterfaceDetails> getTestInterfaceDetails();

    /** Lets the panel see the taps on its values; see QObject::eventFilter. Returns true for a tap that it
     * handled. */
    bool eventFilter(QObject* pWatched, QEvent* pEvent) override;

protected:
    /** Paints the panel; the first paint of the process schedules the start-up notice. */
    void paintEvent(QPaintEvent* pEvent) override;

private slots:
    void onScrollerStateChanged(QScroller::State eState);
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
    void populateBanner();
    void populateRow(QLabel* pCaption, const QString& strCaption, QLabel* pValue, const QString& strValue);
    void fitRow(QLabel* pCaption, QLabel* pValue);
    void watchTaps(QLabel* pLabel, QList<QObject*>& oWidgetList);
    void insertEthernetDetailsIntoGUI(const sNetworkInterfaceDetails& oDetails, QWidget* pCaptionAnchor,
                                      QWidget* pValueAnchor);
    QLayout* insertBlock(QBoxLayout* pColumn, QWidget* pAnchor);
    QLabel* createLabel(const QString& strText, eLabelType eType);
    QLabel* createPlainLabel(const QString& strText, eLabelType eType);
    static void showDetails(const sNetworkInterfaceUIDetails& oLabels,
                            const sNetworkInterfaceDetails& oDetails);
    void setInfoTextLabelStyle(QLabel* pLabel, eLabelType eType);
    void enableTouchScrolling();
    QLabel* createAppLabel(const QString& strText, eLabelType eType);
    sAppStatusUIDetails createAppRow();
    static void setAppRowVisible(const sAppStatusUIDetails& oRow, bool bVisible);
    const sAppStatusUIDetails* findAppRow(int nIndex) const;
    QString interfaceOf(const QObject* pValueLabel) const;
    void runDialog(QDialog* pDialog);
    void LaunchCtrlPanel();
    void retryNamedPipe();

    Ui_MorvaWidget* ui;
    QList<QObject*> m_oNetworkSettingsWidgetList;
    QList<QObject*> m_oSystemDateTimeWidgetList;
    PanelInfo* m_pPanelInfo;
    QTimer m_oSysTimeTimer;
    QPointer<QProcess> m_pShowCtrlPanel; // stays null
    QTimer m_oTimer;
    QMap<QString, sNetworkInterfaceUIDetails> m_oNetworkInterfaceUIDetailsMap;
    QPointer<DateTimeDialog> m_pDateTimeDlg;
    QPointer<NetworkSettingsDialog> m_pNetworkDlg;
    QMap<int, sAppStatusUIDetails> m_oAppStatusUIMap;
    QString m_strDeviceName;
    bool m_bDragged = false; // the finger that touched the rows last has dragged them
};
