#include "panel/tarnixUIwidget.h"

#include "datetime/datetimedialog.h"
#include "network/networksettingsdialog.h"
#include "panel/console.h"
#include "panel/panelinfo.h"
#include "platform/ovikplatform.h"
#include "touch/dialogplacement.h"
#include "ui_tarnixUIwidget.h"

#include <QDateTime>
#include <QDebug>
#include <QFileInfo>
#include <QHostAddress>
#include <QMouseEvent>
#include <QNetworkInterface>
#include <QScreen>
#include <QScrollBar>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr char s_szFontFamily[] = "Arial";
constexpr char s_szDateFormat[] = "dd-MM-yyyy";
constexpr char s_szDHCP[] = "DHCP";
constexpr char s_szTimeFormat[] = "HH:mm:ss";
constexpr int s_nClockMilliseconds = 1000;
constexpr int s_nNetworkMilliseconds = 10000;
constexpr int s_nMaxApplications = 1001;
constexpr int s_nMaxTextLength = 65536; // megabytes would take seconds to lay out

constexpr char s_szScrollBarSheet[] =
    "QScrollBar { background-color: rgb(220,220,220); }"
    "QScrollBar:vertical { width: %1px; }"
    "QScrollBar:horizontal { height: %1px; }"
    "QScrollBar::handle { background-color: rgb(120,130,140); border-radius: 4px;"
    " margin: 4px; min-width: 48px; min-height: 48px; }"
    "QScrollBar::add-line, QScrollBar::sub-line { width: 0px; height: 0px; }";

constexpr char s_szPipePath[] = "/tmp/tarnixUI";
constexpr char s_szPipeMessage[] = "paintEvent finished";
constexpr ssize_t s_nPipeMessageSize = sizeof(s_szPipeMessage) - 1;
constexpr int s_nPipeDelayMilliseconds = 10;
constexpr int s_nPipeRetryMilliseconds = 200;

constexpr char s_szConfigurationApp[] = "/usr/bin/kadconfig-app";
constexpr char s_szConfigurationCommand[] =
    "/bin/bash -c \"QTDIR= QT_PLUGIN_PATH= LD_LIBRARY_PATH= /usr/bin/kadconfig-app &>/dev/null\"";

bool isFifo(const char* szPath)
{
    struct stat oStatus = {};
    return lstat(szPath, &oStatus) == 0 && S_ISFIFO(oStatus.st_mode);
}

void showText(QLabel* pLabel, const QString& strText)
{
    pLabel->setText(strText.left(s_nMaxTextLength));
}

void setTextColor(QWidget* pWidget, const QColor& oColor)
{
    QPalette oPalette = pWidget->palette();
    oPalette.setColor(QPalette::WindowText, oColor);
    pWidget->setPalette(oPalette);
}

} // namespace

TarnixUI::TarnixUI(QWidget* pParent)
    : QWidget(pParent), ui(new Ui_MorvaWidget),
      m_pPanelInfo(new PanelInfo(QGuiApplication::primaryScreen()->geometry().size()))
{
    // The banner's font, for all: the form measures its labels before they have theirs, and would load
    // another one in vain.
    QFont oFont = font();
    oFont.setFamily(s_szFontFamily);
    oFont.setPixelSize(m_pPanelInfo->systemSettingFontSize);
    setFont(oFont);
    ui->setupUi(this);
    m_oTimer.setSingleShot(true);
    m_oTimer.setInterval(s_nNetworkMilliseconds);
    // Full screen also where no window manager sees to it.
    setGeometry(QGuiApplication::primaryScreen()->geometry());
    populateUI();
    enableTouchScrolling();
    ui->scrollArea->verticalScrollBar()->setStyleSheet(
        QStringLiteral("background-color:  %1;").arg(QStringLiteral("rgb(220,220,220)")));

    QPalette oPalette = palette();
    oPalette.setColor(QPalette::Window, Qt::white);
    setPalette(oPalette);
    setAutoFillBackground(true);

    m_oSysTimeTimer.setInterval(s_nClockMilliseconds);
    connect(&m_oSysTimeTimer, SIGNAL(timeout()), this, SLOT(onSysTimeTimerTimeOut()));
    m_oSysTimeTimer.start();
    connect(ui->toolButton, SIGNAL(clicked(bool)), this, SLOT(onToolbuttonClicked()));

    connect(&m_oTimer, SIGNAL(timeout()), this, SLOT(onNetworkTimerTimedOut()));
    m_oTimer.start();

    auto* pConsole = new Console(this);
    pConsole->run();
    connect(pConsole, SIGNAL(quit()), qApp, SLOT(quit()));
}

TarnixUI::~TarnixUI()
{
    delete ui;
    delete m_pPanelInfo;
}

void TarnixUI::populateUI()
{
    populateBanner();

    ui->mainText->setText(m_pPanelInfo->szMainText);
    QFont oMainFont = ui->mainText->font();
    oMainFont.setFamily(s_szFontFamily);
    oMainFont.setPixelSize(m_pPanelInfo->mainTextFontSize);
    ui->mainText->setFont(oMainFont);
    setTextColor(ui->mainText, m_pPanelInfo->mainTextColor);
    // In the middle of the screen, also while the rows are wider than that.
    ui->mainText->setFixedWidth(m_pPanelInfo->screenWidth - m_pPanelInfo->scrollWidth);
    ui->contentsLayout->setAlignment(ui->mainText, Qt::AlignLeft);

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

void TarnixUI::populateBanner()
{
    for (QLayout* pColumn : {ui->captionLayout, ui->valueLayout}) {
        pColumn->setContentsMargins(0, 6, 0, 0);
        pColumn->setSpacing(m_pPanelInfo->spacing);
    }

    ui->banner->setFixedHeight(m_pPanelInfo->bannerSize);
    ui->banner->setStyleSheet(QStringLiteral("background-color: %1").arg(m_pPanelInfo->bannerColor.name()));
    QPalette oPalette = ui->banner->palette();
    oPalette.setBrush(QPalette::Window, m_pPanelInfo->bannerColor);
    ui->banner->setPalette(oPalette);

    ui->toolButton->setIcon(m_pPanelInfo->hSystemSettingIcon);
    ui->toolButton->setIconSize(QSize(m_pPanelInfo->buttonWidth, m_pPanelInfo->buttonHeight));
    ui->toolButton->setContentsMargins(0, 0, 0, 0);
    ui->toolButton->setAutoRaise(true);

    ui->systemSettingsLabel->setText(m_pPanelInfo->szLbl_SystemSetting);
    ui->logo->setPixmap(m_pPanelInfo->hBitmapLogo);
}

void TarnixUI::populateRow(QLabel* pCaption, const QString& strCaption, QLabel* pValue,
                           const QString& strValue)
{
    pCaption->setText(strCaption);
    setInfoTextLabelStyle(pCaption, eType_Label);
    pValue->setText(strValue);
    setInfoTextLabelStyle(pValue, eType_Form);
    fitRow(pCaption, pValue);
}

// On the narrowest screens a long caption takes two lines, so that an address fits beside the captions.
void TarnixUI::fitRow(QLabel* pCaption, QLabel* pValue)
{
    if (pCaption->sizeHint().width() * 2 <= m_pPanelInfo->screenWidth) {
        return;
    }
    const int nHeight = pCaption->fontMetrics().lineSpacing() * 2;
    pCaption->setWordWrap(true);
    pCaption->setFixedHeight(nHeight);
    pValue->setFixedHeight(nHeight);
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
    pCaptions->addWidget(createLabel(m_pPanelInfo->szLbl_IPAddress, eType_Label));
    pCaptions->addWidget(createLabel(m_pPanelInfo->szLbl_mask, eType_Label));
    pCaptions->addWidget(createLabel(m_pPanelInfo->szLbl_GateWay, eType_Label));

    QLayout* pValues = insertBlock(ui->valueLayout, pValueAnchor);
    sNetworkInterfaceUIDetails oLabels{};
    oLabels.m_pIPAddressLabel = createLabel(QString(), eType_Form);
    oLabels.m_pSubnetMaskLabel = createLabel(QString(), eType_Form);
    oLabels.m_pStdGatewayLabel = createLabel(QString(), eType_Form);
    pValues->addWidget(oLabels.m_pIPAddressLabel);
    pValues->addWidget(oLabels.m_pSubnetMaskLabel);
    pValues->addWidget(oLabels.m_pStdGatewayLabel);
    m_oNetworkInterfaceUIDetailsMap.insert(oDetails.m_strName, oLabels);
}

QLayout* TarnixUI::insertBlock(QBoxLayout* pColumn, QWidget* pAnchor)
{
    auto* pBlock = new QWidget(this);
    auto* pRows = new QVBoxLayout(pBlock);
    pRows->setContentsMargins(1, 0, 6, 0);
    pRows->setSpacing(m_pPanelInfo->spacing);
    pColumn->insertWidget(pColumn->indexOf(pAnchor), pBlock);
    return pRows;
}

QLabel* TarnixUI::createLabel(const QString& strText, eLabelType eType)
{
    QLabel* pLabel = createPlainLabel(strText, eType);
    if (eType == eType_Form) {
        watchTaps(pLabel, m_oNetworkSettingsWidgetList);
    }
    return pLabel;
}

QLabel* TarnixUI::createPlainLabel(const QString& strText, eLabelType eType)
{
    auto* pLabel = new QLabel(strText, this);
    pLabel->setTextFormat(Qt::PlainText);
    setInfoTextLabelStyle(pLabel, eType);
    return pLabel;
}

void TarnixUI::setInfoTextLabelStyle(QLabel* pLabel, eLabelType eType)
{
    QFont oFont = pLabel->font();
    oFont.setFamily(s_szFontFamily);
    oFont.setPixelSize(m_pPanelInfo->infoTextFontSize);
    oFont.setWeight(QFont::Bold);
    pLabel->setFont(oFont);
    // One height for all, whatever script a text is in, keeps the two columns in step.
    pLabel->setFixedHeight(m_pPanelInfo->infoTextFontSize * 3 / 2);

    if (eType == eType_Label) {
        pLabel->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        setTextColor(pLabel, m_pPanelInfo->mainTextColor);
    } else if (eType == eType_Form) {
        pLabel->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
        setTextColor(pLabel, m_pPanelInfo->infoTextColor);
    }
}

void TarnixUI::enableTouchScrolling()
{
    const QString strSheet = QString(s_szScrollBarSheet).arg(m_pPanelInfo->scrollWidth);
    ui->scrollArea->verticalScrollBar()->parentWidget()->setStyleSheet(strSheet);
    ui->scrollArea->horizontalScrollBar()->parentWidget()->setStyleSheet(strSheet);
    QScroller::grabGesture(ui->scrollArea->viewport(), QScroller::LeftMouseButtonGesture);
    connect(QScroller::scroller(ui->scrollArea->viewport()), SIGNAL(stateChanged(QScroller::State)), this,
            SLOT(onScrollerStateChanged(QScroller::State)));
}

void TarnixUI::setDeviceType(const QString& strText)
{
    showText(ui->deviceTypeForm_Label, strText);
}

void TarnixUI::setIdentNo(const QString& strText)
{
    Q_UNUSED(strText) // the device's other software requires that the number sent is never shown
    ui->identNoForm_Label->setText(QString());
}

void TarnixUI::setTargetVersion(const QString& strText)
{
    showText(ui->targetVersionForm_Label, strText);
}

void TarnixUI::setNumberOfAppsinUI(int nCount)
{
    if (nCount < 1) {
        return;
    }
    // The rows' keys start at 0 while commands address the extra applications from 1; the device's other
    // software requires it so.
    const int nRows = qMin(nCount, s_nMaxApplications) - 1;
    QLayout* pLayout = ui->scrollAreaWidgetContents->layout();
    pLayout->setEnabled(false); // else it would lay out all rows again for each one that appears
    for (auto it = m_oAppStatusUIMap.lowerBound(nRows); it != m_oAppStatusUIMap.end(); ++it) {
        setAppRowVisible(*it, false);
    }
    for (int nKey = 0; nKey < nRows; ++nKey) {
        if (!m_oAppStatusUIMap.contains(nKey)) {
            m_oAppStatusUIMap.insert(nKey, createAppRow());
        }
        setAppRowVisible(m_oAppStatusUIMap.value(nKey), true);
    }
    pLayout->setEnabled(true);
}

void TarnixUI::setAppRowVisible(const sAppStatusUIDetails& oRow, bool bVisible)
{
    for (QLabel* pLabel :
         {oRow.m_pAppNameLabel, oRow.m_pAppFormLabel, oRow.m_pStatLabel, oRow.m_pStatFormLabel}) {
        pLabel->setVisible(bVisible);
    }
}

sAppStatusUIDetails TarnixUI::createAppRow()
{
    sAppStatusUIDetails oRow{};
    oRow.m_pStatLabel = createAppLabel(m_pPanelInfo->szLbl_PLCStatus, eType_Label);
    oRow.m_pAppNameLabel = createAppLabel(m_pPanelInfo->szLbl_AppName, eType_Label);
    oRow.m_pStatFormLabel = createAppLabel(QString(), eType_Form);
    oRow.m_pAppFormLabel = createAppLabel(QString(), eType_Form);
    fitRow(oRow.m_pAppNameLabel, oRow.m_pAppFormLabel);
    return oRow;
}

QLabel* TarnixUI::createAppLabel(const QString& strText, eLabelType eType)
{
    const bool bCaption = eType == eType_Label;
    const QLabel* pFixedLabel = bCaption ? ui->appname_Label : ui->appnameForm_Label;
    QLabel* pLabel = createPlainLabel(strText, eType);
    pLabel->setIndent(pFixedLabel->indent());
    (bCaption ? ui->captionLayout : ui->valueLayout)->addWidget(pLabel);
    return pLabel;
}

const sAppStatusUIDetails* TarnixUI::findAppRow(int nIndex) const
{
    const auto it = m_oAppStatusUIMap.constFind(nIndex);
    if (it == m_oAppStatusUIMap.constEnd()) {
        // Names setPLCStatus for names too: the device's other software requires this text.
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
    if (pEvent->type() != QEvent::MouseButtonRelease || m_bDragged) { // the end of a drag is no tap
        return QWidget::eventFilter(pWatched, pEvent);
    }
    if (m_oNetworkSettingsWidgetList.contains(pWatched)) {
        onNetworkSettingsRequested(pWatched);
        return true;
    }
    if (m_oSystemDateTimeWidgetList.contains(pWatched)) {
        onSystemDateTimeRequested();
        return true;
    }
    return QWidget::eventFilter(pWatched, pEvent);
}

void TarnixUI::onScrollerStateChanged(QScroller::State eState)
{
    if (eState == QScroller::Pressed || eState == QScroller::Dragging) {
        m_bDragged = eState == QScroller::Dragging;
    }
}

void TarnixUI::onSysTimeTimerTimeOut()
{
    const QDateTime oNow = QDateTime::currentDateTime();
    ui->systemDateForm_Label->setText(oNow.toString(s_szDateFormat));
    ui->systemTimeForm_Label->setText(oNow.toString(s_szTimeFormat));
}

void TarnixUI::onSystemDateTimeRequested()
{
    if (m_pDateTimeDlg) {
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
    QList<sNetworkInterfaceDetails> oList;
    const QList<QNetworkInterface> oInterfaces = QNetworkInterface::allInterfaces();
    for (const QNetworkInterface& oInterface : oInterfaces) {
        if (oInterface.type() == QNetworkInterface::CanBus ||
            oInterface.flags().testFlag(QNetworkInterface::IsLoopBack)) {
            continue;
        }
        sNetworkInterfaceDetails oDetails = getInterfaceDetails(oInterface.name());
        oDetails.m_strName = oInterface.name(); // also while the service is absent: blocks are kept by name
        oList.append(oDetails);
    }
    return oList;
}

sNetworkInterfaceDetails TarnixUI::getInterfaceDetails(const QString& strName)
{
    OVIKPlatform* pPlatform = OVIKPlatform::getInstance();
    sNetworkInterfaceDetails oDetails;
    if (!pPlatform->SetInterfaceName(strName.toLatin1().constData()) || !pPlatform->UpdateNetworkSettings()) {
        return oDetails;
    }
    unsigned char oMac[6] = {};
    pPlatform->GetMacAddress(oMac);
    QStringList oMacParts;
    for (const unsigned char nByte : oMac) {
        oMacParts.append(
            QString::number(nByte, 16)); // without leading zeros: required by the device's other software
    }
    oDetails.m_strName = strName;
    oDetails.m_strMacId = oMacParts.join(':');
    oDetails.m_bISDHCP = pPlatform->GetDHCP();
    oDetails.m_strIPAddress = pPlatform->GetIpAddressAsString();
    oDetails.m_strSubnetMask = QHostAddress(pPlatform->GetNetmask()).toString();
    oDetails.m_strStdGateway = QHostAddress(pPlatform->GetGateWay()).toString();
    return oDetails;
}

bool TarnixUI::setInterfaceDetails(const sNetworkInterfaceDetails& oDetails)
{
    OVIKPlatform* pPlatform = OVIKPlatform::getInstance();
    if (!pPlatform->SetInterfaceName(oDetails.m_strName.toLatin1().constData())) {
        return true; // required by the device's other software
    }
    pPlatform->SetIpAddress(QHostAddress(oDetails.m_strIPAddress).toIPv4Address());
    pPlatform->SetNetmask(QHostAddress(oDetails.m_strSubnetMask).toIPv4Address());
    pPlatform->SetGateWay(QHostAddress(oDetails.m_strStdGateway).toIPv4Address());
    pPlatform->SetDHCP(oDetails.m_bISDHCP); // after the addresses, which clear it
    return pPlatform->SetNetworkSettings();
}

QList<sNetworkInterfaceDetails> TarnixUI::getTestInterfaceDetails()
{
    QList<sNetworkInterfaceDetails> oList;
    for (const char* szNumber : {"0", "1", "2"}) {
        sNetworkInterfaceDetails oDetails;
        oDetails.m_strName = QStringLiteral("eth%1").arg(szNumber);
        oDetails.m_strIPAddress = QStringLiteral("192.168.2.10%1").arg(szNumber);
        oDetails.m_strSubnetMask = QStringLiteral("255.255.255.0");
        oDetails.m_strStdGateway = QStringLiteral("192.168.2.1");
        oList.append(oDetails);
    }
    return oList;
}

void TarnixUI::onNetworkTimerTimedOut()
{
    const QMap<QString, sNetworkInterfaceUIDetails> oMap = m_oNetworkInterfaceUIDetailsMap;
    for (auto it = oMap.begin(); it != oMap.end(); ++it) {
        showDetails(*it, getInterfaceDetails(it.key()));
    }
    m_oTimer.start();
}

void TarnixUI::showDetails(const sNetworkInterfaceUIDetails& oLabels,
                           const sNetworkInterfaceDetails& oDetails)
{
    // Without a lease the address is none, which the platform client tells as 0.0.0.0.
    const bool bWaitsForLease =
        oDetails.m_bISDHCP && QHostAddress(oDetails.m_strIPAddress).toIPv4Address() == 0;
    oLabels.m_pIPAddressLabel->setText(bWaitsForLease ? s_szDHCP : oDetails.m_strIPAddress);
    oLabels.m_pSubnetMaskLabel->setText(bWaitsForLease ? QString() : oDetails.m_strSubnetMask);
    oLabels.m_pStdGatewayLabel->setText(bWaitsForLease ? QString() : oDetails.m_strStdGateway);
}

void TarnixUI::onNetworkSettingsRequested(QObject* pWatched)
{
    const QString strInterface = interfaceOf(pWatched);
    if (strInterface.isNull() || m_pNetworkDlg) {
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
        if (pValueLabel == it->m_pIPAddressLabel || pValueLabel == it->m_pSubnetMaskLabel ||
            pValueLabel == it->m_pStdGatewayLabel) {
            return it.key();
        }
    }
    return {};
}

void TarnixUI::runDialog(QDialog* pDialog)
{
    QFont oFont = font();
    oFont.setPixelSize(m_pPanelInfo->infoTextFontSize);
    new DialogPlacement(pDialog, oFont);
    pDialog->setWindowModality(Qt::WindowModal); // the panel has to wait, an on-screen keyboard not
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
    for (int nDescriptor = 3; nDescriptor <= 254; ++nDescriptor) {
        fcntl(nDescriptor, F_SETFD, FD_CLOEXEC);
    }
    if (!QFileInfo::exists(s_szConfigurationApp)) {
        return;
    }
    QStringList oArguments = QProcess::splitCommand(QString(s_szConfigurationCommand));
    QProcess oProcess;
    oProcess.setProgram(oArguments.takeFirst());
    oProcess.setArguments(oArguments);
    // The child must neither read the runtime's commands nor hold the runtime's end of our output open.
    oProcess.setStandardInputFile(QProcess::nullDevice());
    oProcess.setStandardOutputFile(QProcess::nullDevice());
    oProcess.setStandardErrorFile(QProcess::nullDevice());
    oProcess.startDetached();
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
        QTimer::singleShot(s_nPipeDelayMilliseconds, this, SLOT(writeToNamedPipe()));
    }
}

void TarnixUI::writeToNamedPipe()
{
    if (mkfifo(s_szPipePath, 0777) != 0 && errno != EEXIST) {
        qWarning() << "Failed to create named pipe for writing 1" << strerror(errno);
        return;
    }
    const int nDescriptor = open(s_szPipePath, O_WRONLY | O_NONBLOCK | O_NOFOLLOW | O_CLOEXEC);
    if (nDescriptor < 0) {
        const int nError = errno;
        if (nError == ENXIO && isFifo(s_szPipePath)) {
            retryNamedPipe(); // nobody has it open for reading yet
            return;
        }
        qWarning() << "Failed to open named pipe for writing 2" << strerror(nError);
        return;
    }
    const bool bWritten = write(nDescriptor, s_szPipeMessage, s_nPipeMessageSize) == s_nPipeMessageSize;
    const int nError = errno;
    ::close(nDescriptor);
    if (bWritten) {
        qWarning() << "writeToNamedPipe"
                   << "Written message to named pipe successfully";
        return;
    }
    if (nError != EAGAIN) {
        qWarning() << "Failed to open named pipe for writing 2" << strerror(nError);
    }
    if (nError == EAGAIN || nError == EPIPE) {
        retryNamedPipe(); // the pipe is full, or the reader went away before the message reached it
    }
}

void TarnixUI::retryNamedPipe()
{
    QTimer::singleShot(s_nPipeRetryMilliseconds, this, SLOT(writeToNamedPipe()));
}
