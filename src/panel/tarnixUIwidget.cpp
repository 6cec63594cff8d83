#include "panel/tarnixUIwidget.h"

#include "datetime/datetimedialog.h"
#include "network/networksettingsdialog.h"
#include "panel/configurationapp.h"
#include "panel/console.h"
#include "panel/panelinfo.h"
#include "panel/panelstyle.h"
#include "panel/rowlabel.h"
#include "panel/rowtaps.h"
#include "panel/startnotice.h"
#include "platform/ovikplatform.h"
#include "touch/fingerscroll.h"
#include "touch/touchdialog.h"
#include "ui_tarnixUIwidget.h"
#include "window/visiblescreen.h"

#include <QCloseEvent>
#include <QDateTime>
#include <QDebug>

namespace {

constexpr char s_szDateFormat[] = "dd-MM-yyyy";
constexpr char s_szTimeFormat[] = "HH:mm:ss";
constexpr int s_nClockMilliseconds = 1000;
constexpr int s_nNetworkMilliseconds = 10000;
constexpr int s_nMaxApplications = 1001;
constexpr int s_nNoticeDelayMilliseconds = 10;
constexpr int s_nNoticeRetryMilliseconds = 200;
constexpr QRect s_oGeometryWithoutScreen(0, 0, 800, 480);

QRect screenGeometry()
{
    const QRect oScreen = screenRect();
    return oScreen.isNull() ? s_oGeometryWithoutScreen : oScreen;
}

} // namespace

TarnixUI::TarnixUI(QWidget* pParent)
    : QWidget(pParent), ui(new Ui_MorvaWidget), m_pPanelInfo(new PanelInfo(screenGeometry().size()))
{
    stylePanel(this, *m_pPanelInfo);
    ui->setupUi(this);
    m_pRowTaps = new RowTaps(ui->scrollArea, ui->valueLayout);
    m_oTimer.setSingleShot(true);
    m_oTimer.setInterval(s_nNetworkMilliseconds);
    // Without a window manager, full screen alone does not resize the window.
    setGeometry(screenGeometry());
    populateUI();
    styleScrollBars(*ui, *m_pPanelInfo);
    letFingerScroll(ui->scrollArea);
    ui->scrollAreaWidgetContents->installEventFilter(this);

    m_oSysTimeTimer.setInterval(s_nClockMilliseconds);
    connect(&m_oSysTimeTimer, SIGNAL(timeout()), this, SLOT(onSysTimeTimerTimeOut()));
    m_oSysTimeTimer.start();
    connect(ui->toolButton, SIGNAL(clicked(bool)), this, SLOT(onToolbuttonClicked()));

    connect(&m_oTimer, SIGNAL(timeout()), this, SLOT(onNetworkTimerTimedOut()));
    m_oTimer.start();

    auto* pConsole = new Console(this);
    pConsole->run(); // Kept, see docs/compatibility.md
    // Not quit(), which a window that refuses to close stops in Qt 6.
    connect(pConsole, &Console::quit, [] { QCoreApplication::exit(); });
}

TarnixUI::~TarnixUI()
{
    delete ui;
    delete m_pPanelInfo;
}

void TarnixUI::populateUI()
{
    styleForm(*ui, *m_pPanelInfo);
    populateRow(ui->deviceType_Label, m_pPanelInfo->szLbl_DeviceType, ui->deviceTypeForm_Label, "DeviceType");
    setDeviceType(OVIKPlatform::getInstance()->GetDeviceNameAsString());
    populateRow(ui->identNo_Label, m_pPanelInfo->szLbl_IdentNo, ui->identNoForm_Label, "IdentNo");
    if (m_pPanelInfo->szLbl_IdentNo.isEmpty()) {
        ui->identNo_Label->hide();
        ui->identNoForm_Label->hide();
    }
    const QList<sNetworkInterfaceDetails> oInterfaces = getNetworkInterfacesList();
    for (const sNetworkInterfaceDetails& oDetails : oInterfaces) {
        insertEthernetDetailsIntoGUI(oDetails, ui->targetVersion_Label, ui->targetVersionForm_Label);
    }
    onNetworkTimerTimedOut();
    populateRow(ui->targetVersion_Label, m_pPanelInfo->szLbl_TargetVersion, ui->targetVersionForm_Label,
                "TargVer");
    populateRow(ui->plcStatus_Label, m_pPanelInfo->szLbl_PLCStatus, ui->plcStatusForm_Label, "PLCStatus");
    populateRow(ui->appname_Label, m_pPanelInfo->szLbl_AppName, ui->appnameForm_Label, "AppName");
    populateRow(ui->systemDate_Label, m_pPanelInfo->szLbl_SystemDate, ui->systemDateForm_Label, "SystemDate");
    populateRow(ui->systemTime_Label, m_pPanelInfo->szLbl_SystemTime, ui->systemTimeForm_Label, "SystemTime");
    for (QLabel* pLabel :
         {ui->systemDate_Label, ui->systemDateForm_Label, ui->systemTime_Label, ui->systemTimeForm_Label}) {
        watchTaps(pLabel, m_oSystemDateTimeWidgetList);
    }
}

void TarnixUI::populateRow(QLabel* pCaption, const QString& strCaption, QLabel* pValue,
                           const QString& strValue)
{
    pCaption->setText(strCaption);
    setInfoTextLabelStyle(pCaption, eType_Label);
    pValue->setText(strValue);
    setInfoTextLabelStyle(pValue, eType_Form);
    fitRow(pCaption, pValue, *m_pPanelInfo);
}

void TarnixUI::watchTaps(QLabel* pLabel, QList<QObject*>& oWidgetList)
{
    oWidgetList.append(pLabel);
    pLabel->installEventFilter(this);
}

void TarnixUI::insertEthernetDetailsIntoGUI(const sNetworkInterfaceDetails& oDetails, QWidget* pCaptionAnchor,
                                            QWidget* pValueAnchor)
{
    if (!pCaptionAnchor || !pValueAnchor) {
        return;
    }
    QLayout* pCaptions = insertBlock(ui->captionLayout, pCaptionAnchor);
    for (const QString& strCaption :
         {m_pPanelInfo->szLbl_IPAddress, m_pPanelInfo->szLbl_mask, m_pPanelInfo->szLbl_GateWay}) {
        pCaptions->addWidget(createLabel(strCaption, eType_Label));
    }
    QLayout* pValues = insertBlock(ui->valueLayout, pValueAnchor);
    const sNetworkInterfaceUIDetails oLabels{createLabel(QString(), eType_Form),
                                             createLabel(QString(), eType_Form),
                                             createLabel(QString(), eType_Form)};
    for (QLabel* pLabel :
         {oLabels.m_pIPAddressLabel, oLabels.m_pSubnetMaskLabel, oLabels.m_pStdGatewayLabel}) {
        pValues->addWidget(pLabel);
    }
    m_oNetworkInterfaceUIDetailsMap.insert(oDetails.m_strName, oLabels);
}

QLabel* TarnixUI::createLabel(const QString& strText, eLabelType eType)
{
    auto* pLabel = new RowLabel(strText, this);
    setInfoTextLabelStyle(pLabel, eType);
    if (eType == eType_Form) {
        watchTaps(pLabel, m_oNetworkSettingsWidgetList);
    }
    return pLabel;
}

void TarnixUI::setInfoTextLabelStyle(QLabel* pLabel, eLabelType eType)
{
    styleInfoLabel(pLabel, eType, *m_pPanelInfo);
}

void TarnixUI::setDeviceType(const QString& strText)
{
    showText(ui->deviceTypeForm_Label, strText);
}

void TarnixUI::setIdentNo(const QString& /*strIdentNo*/) // Kept, see docs/compatibility.md
{
    ui->identNoForm_Label->setText(QString());
}

void TarnixUI::setTargetVersion(const QString& strText)
{
    showText(ui->targetVersionForm_Label, strText);
}

void TarnixUI::setNumberOfAppsinUI(int nCount)
{
    if (nCount >= 1) {
        // Kept, see docs/compatibility.md
        showApplicationRows(m_oAppStatusUIMap, qMin(nCount, s_nMaxApplications) - 1, *ui, *m_pPanelInfo);
    }
}

const sAppStatusUIDetails* TarnixUI::findAppRow(int nIndex) const
{
    const auto it = m_oAppStatusUIMap.constFind(nIndex);
    if (it == m_oAppStatusUIMap.constEnd()) {
        // Kept, see docs/compatibility.md
        qWarning() << "setPLCStatus: ui element not found idx:" << nIndex
                   << " size: " << m_oAppStatusUIMap.size();
        return nullptr;
    }
    return &*it;
}

void TarnixUI::setApplicationName(const QString& strText, int nIndex)
{
    if (nIndex == 0) {
        showText(ui->appnameForm_Label, strText);
    } else if (const sAppStatusUIDetails* pRow = findAppRow(nIndex)) {
        showText(pRow->m_pAppFormLabel, strText);
    }
}

void TarnixUI::setPLCStatus(const QString& strText, int nIndex)
{
    if (nIndex == 0) {
        showText(ui->plcStatusForm_Label, strText);
    } else if (const sAppStatusUIDetails* pRow = findAppRow(nIndex)) {
        showText(pRow->m_pStatFormLabel, strText);
    }
}

bool TarnixUI::eventFilter(QObject* pWatched, QEvent* pEvent)
{
    QObject* pRow = m_pRowTaps->tappedRow(pWatched, pEvent);
    if (!pRow) {
        return QWidget::eventFilter(pWatched, pEvent);
    }
    // From the event loop: a dialog that runs inside of a release of QScroller could not be scrolled itself.
    if (m_oNetworkSettingsWidgetList.contains(pRow)) {
        QMetaObject::invokeMethod(this, "onNetworkSettingsRequested", Qt::QueuedConnection,
                                  Q_ARG(QObject*, pRow));
        return true;
    }
    if (m_oSystemDateTimeWidgetList.contains(pRow)) {
        QMetaObject::invokeMethod(this, "onSystemDateTimeRequested", Qt::QueuedConnection);
        return true;
    }
    return QWidget::eventFilter(pWatched, pEvent);
}

void TarnixUI::onSysTimeTimerTimeOut()
{
    const QDateTime oNow = QDateTime::currentDateTime();
    ui->systemDateForm_Label->setText(oNow.toString(s_szDateFormat));
    ui->systemTimeForm_Label->setText(oNow.toString(s_szTimeFormat));
}

void TarnixUI::onSystemDateTimeRequested()
{
    if (m_pDateTimeDlg || m_pNetworkDlg) {
        return;
    }
    m_pDateTimeDlg = new DateTimeDialog(this);
    runDialog(m_pDateTimeDlg);
    onSysTimeTimerTimeOut();
}

QList<sNetworkInterfaceDetails> TarnixUI::getNetworkInterfacesList()
{
    return getSystemNetworkInterfaceDetails();
}

QList<sNetworkInterfaceDetails> TarnixUI::getSystemNetworkInterfaceDetails()
{
    return m_oInterfaceSettings.readAll();
}

sNetworkInterfaceDetails TarnixUI::getInterfaceDetails(const QString& strName)
{
    return m_oInterfaceSettings.read(strName);
}

bool TarnixUI::setInterfaceDetails(const sNetworkInterfaceDetails& oDetails)
{
    return InterfaceSettings::write(oDetails);
}

QObject* TarnixUI::watchReplies()
{
    return OVIKPlatform::getInstance()->watchReplies();
}

QList<sNetworkInterfaceDetails> TarnixUI::getTestInterfaceDetails()
{
    return InterfaceSettings::testDetails();
}

void TarnixUI::onNetworkTimerTimedOut()
{
    const QMap<QString, sNetworkInterfaceUIDetails> oMap = m_oNetworkInterfaceUIDetailsMap;
    for (auto it = oMap.begin(); it != oMap.end(); ++it) {
        showDetails(*it, getInterfaceDetails(it.key()), tr("DHCP"));
    }
    m_oTimer.start();
}

void TarnixUI::onNetworkSettingsRequested(QObject* pWatched)
{
    const QString strInterface = interfaceOf(pWatched);
    if (strInterface.isNull() || m_pNetworkDlg || m_pDateTimeDlg) {
        return;
    }
    m_pNetworkDlg = new NetworkSettingsDialog(getNetworkInterfacesList(), strInterface, this);
    connect(m_pNetworkDlg, SIGNAL(settingsApplied()), this, SLOT(onNetworkTimerTimedOut()));
    runDialog(m_pNetworkDlg);
}

QString TarnixUI::interfaceOf(const QObject* pValueLabel) const
{
    const auto& oMap = m_oNetworkInterfaceUIDetailsMap;
    for (auto it = oMap.begin(); it != oMap.end(); ++it) {
        if (isOneOf(*it, pValueLabel)) {
            return it.key();
        }
    }
    return {};
}

void TarnixUI::runDialog(QDialog* pDialog)
{
    QFont oFont = font();
    oFont.setPixelSize(m_pPanelInfo->infoTextFontSize);
    makeTouchable(pDialog, oFont);
    const QPointer<QDialog> pGuard = pDialog;
    pDialog->exec();
    delete pGuard;
}

void TarnixUI::onToolbuttonClicked()
{
    LaunchCtrlPanel();
}

void TarnixUI::LaunchCtrlPanel()
{
    launchConfigurationApp();
}

void TarnixUI::onProcessError(QProcess::ProcessError eError)
{
    Q_UNUSED(eError)
}

void TarnixUI::onProcessStarted() {}

void TarnixUI::onProcessFinished(int nExitCode)
{
    Q_UNUSED(nExitCode)
}

void TarnixUI::paintEvent(QPaintEvent* pEvent)
{
    QWidget::paintEvent(pEvent);
    static int s_nPaints = 0;
    if (s_nPaints == 0) {
        ++s_nPaints;
        QTimer::singleShot(s_nNoticeDelayMilliseconds, this, SLOT(writeToNamedPipe()));
    }
}

void TarnixUI::closeEvent(QCloseEvent* pEvent)
{
    pEvent->ignore();
}

void TarnixUI::writeToNamedPipe()
{
    if (writeStartNotice()) {
        QTimer::singleShot(s_nNoticeRetryMilliseconds, this, SLOT(writeToNamedPipe()));
    }
}
