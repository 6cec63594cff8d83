// The panel's peer in the measurements: the same forms, texts, fonts, bus calls and child processes; minimal,
// without safeguards.
#include "bareservice.h"
#include "touch/touchsheet.h"
#include "ui_datetimedialog.h"
#include "ui_networksettingsdialog.h"
#include "ui_tarnixUIwidget.h"
#include "ui_winkhorwidget.h"

#include <QApplication>
#include <QDateTime>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QScreen>
#include <QScrollBar>
#include <QScroller>
#include <QSocketNotifier>
#include <QStyledItemDelegate>
#include <QTimer>
#include <iostream>
#include <unistd.h>

namespace {

constexpr int s_nRowFontSize = 20;
constexpr int s_nRowSpacing = 32;
constexpr int s_nMainFontSize = 30;
constexpr int s_nBannerFontSize = 25;
constexpr int s_nBannerHeight = 70;
constexpr int s_nFieldHeight = 48;
constexpr int s_nIconSize = 48;
constexpr int s_nScrollBarWidth = 32;
constexpr QSize s_oNetworkDialog(356, 334); // as the panel's are on a screen of 800 x 480
constexpr QSize s_oDateDialog(506, 346);

QFont fontOf(int nPixels, bool bBold = false)
{
    QFont oFont("Arial");
    oFont.setPixelSize(nPixels);
    oFont.setBold(bBold);
    return oFont;
}

} // namespace

class BarePanel : public QWidget
{
    Q_OBJECT

public:
    BarePanel();
    bool eventFilter(QObject* pWatched, QEvent* pEvent) override;

private slots:
    void onTick() const;
    void onNetworkTimerTimedOut();
    void onInput();

private:
    void fillBanner() const;
    void fillRows();
    QLabel* makeLabel(QLayout* pColumn, const QString& strText, bool bCaption);
    static void style(QLabel* pLabel, bool bCaption);
    void addBlock(const QString& strName);
    void execute(const QString& strCommand);
    void showRows(int nRows);
    void showNetworkDialog();
    void showDateTimeDialog();
    void prepare(QDialog& oDialog, const QSize& oSize);
    void showWink(bool bVisible);

    Ui_MorvaWidget m_oForm;
    QMap<QString, QList<QLabel*>> m_oAddresses;
    QList<QObject*> m_oDateLabels;
    QVector<QList<QLabel*>> m_oRows;
    QWidget* m_pWink = nullptr;
    QString m_strDevice;
    QString m_strInput;
    QPoint m_oPressed;
};

BarePanel::BarePanel()
{
    setFont(fontOf(s_nBannerFontSize));
    m_oForm.setupUi(this);
    setGeometry(QGuiApplication::primaryScreen()->geometry());
    fillBanner();
    fillRows();
    m_oForm.scrollArea->verticalScrollBar()->setFixedWidth(s_nScrollBarWidth);
    QScroller::grabGesture(m_oForm.scrollArea->viewport(), QScroller::LeftMouseButtonGesture);
    QPalette oPalette = palette();
    oPalette.setColor(QPalette::Window, Qt::white);
    setPalette(oPalette);
    setAutoFillBackground(true);

    auto* pTimer = new QTimer(this);
    connect(pTimer, SIGNAL(timeout()), this, SLOT(onTick()));
    pTimer->start(1000);
    connect(new QSocketNotifier(STDIN_FILENO, QSocketNotifier::Read, this), SIGNAL(activated(int)), this,
            SLOT(onInput()));
}

void BarePanel::fillBanner() const
{
    m_oForm.banner->setFixedHeight(s_nBannerHeight);
    m_oForm.toolButton->setIcon(QIcon(":/images/quen/setting_up.bmp"));
    m_oForm.toolButton->setIconSize({s_nIconSize, s_nIconSize});
    m_oForm.toolButton->setAutoRaise(true);
    m_oForm.systemSettingsLabel->setText("System Settings");
    m_oForm.logo->setPixmap(QPixmap(":/images/quen/logo.bmp"));
    m_oForm.mainText->setText("No TARNIX Vistrel Loaded");
    m_oForm.mainText->setFont(fontOf(s_nMainFontSize));
}

void BarePanel::fillRows()
{
    for (QLayout* pColumn : {m_oForm.captionLayout, m_oForm.valueLayout}) {
        pColumn->setContentsMargins(0, 6, 0, 0);
        pColumn->setSpacing(s_nRowSpacing);
        for (int i = 0; i < pColumn->count(); ++i) {
            style(static_cast<QLabel*>(pColumn->itemAt(i)->widget()), pColumn == m_oForm.captionLayout);
        }
    }
    m_oForm.identNo_Label->hide();
    m_oForm.identNoForm_Label->hide();
    m_oForm.deviceTypeForm_Label->clear();
    m_oForm.targetVersionForm_Label->setText("TargVer");
    m_oForm.plcStatusForm_Label->setText("PLCStatus");
    m_oForm.appnameForm_Label->setText("AppName");
    m_oForm.systemDateForm_Label->setText("SystemDate");
    m_oForm.systemTimeForm_Label->setText("SystemTime");
    findService();
    const QStringList oNames = interfaceNames();
    for (const QString& strName : oNames) {
        addBlock(strName);
    }
    onNetworkTimerTimedOut();
    m_oDateLabels = {m_oForm.systemDate_Label, m_oForm.systemDateForm_Label, m_oForm.systemTime_Label,
                     m_oForm.systemTimeForm_Label};
    for (QObject* pLabel : qAsConst(m_oDateLabels)) {
        pLabel->installEventFilter(this);
    }
}

void BarePanel::style(QLabel* pLabel, bool bCaption)
{
    pLabel->setFont(fontOf(s_nRowFontSize, true));
    pLabel->setFixedHeight(s_nRowFontSize * 3 / 2);
    pLabel->setAlignment((bCaption ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
}

QLabel* BarePanel::makeLabel(QLayout* pColumn, const QString& strText, bool bCaption)
{
    auto* pLabel = new QLabel(strText);
    pLabel->setTextFormat(Qt::PlainText);
    style(pLabel, bCaption);
    pColumn->addWidget(pLabel);
    return pLabel;
}

void BarePanel::addBlock(const QString& strName)
{
    for (const auto& oSide : {std::make_pair(m_oForm.captionLayout, m_oForm.targetVersion_Label),
                              std::make_pair(m_oForm.valueLayout, m_oForm.targetVersionForm_Label)}) {
        const bool bCaption = oSide.first == m_oForm.captionLayout;
        auto* pBlock = new QWidget;
        auto* pRows = new QVBoxLayout(pBlock);
        pRows->setContentsMargins(1, 0, 6, 0);
        pRows->setSpacing(s_nRowSpacing);
        for (const char* szCaption : {"IP Address:", "Subnet Mask:", "Std. Gateway:"}) {
            QLabel* pLabel = makeLabel(pRows, bCaption ? szCaption : "", bCaption);
            if (!bCaption) {
                m_oAddresses[strName].append(pLabel);
                pLabel->installEventFilter(this);
            }
        }
        oSide.first->insertWidget(oSide.first->indexOf(oSide.second), pBlock);
    }
}

void BarePanel::onTick() const
{
    const QDateTime oNow = QDateTime::currentDateTime();
    m_oForm.systemDateForm_Label->setText(oNow.toString("dd-MM-yyyy"));
    m_oForm.systemTimeForm_Label->setText(oNow.toString("HH:mm:ss"));
}

void BarePanel::onNetworkTimerTimedOut()
{
    for (auto it = m_oAddresses.cbegin(); it != m_oAddresses.cend(); ++it) {
        const QStringList oTexts = addressesOf(it.key());
        const bool bWaits = oTexts[0].isEmpty() || oTexts[0] == "0.0.0.0";
        for (int i = 0; i < oTexts.size(); ++i) {
            it.value()[i]->setText(!bWaits ? oTexts[i] : i == 0 ? "DHCP" : "");
        }
    }
}

void BarePanel::onInput()
{
    char aBytes[65536];
    const ssize_t nBytes = read(STDIN_FILENO, aBytes, sizeof aBytes);
    if (nBytes <= 0) {
        qApp->quit();
        return;
    }
    m_strInput += QString::fromUtf8(aBytes, static_cast<int>(nBytes));
    QStringList oLines = m_strInput.split('\n');
    m_strInput = oLines.takeLast();
    for (const QString& strLine : qAsConst(oLines)) {
        execute(strLine);
    }
}

void BarePanel::execute(const QString& strCommand)
{
    const char cCommand = strCommand.at(0).toLatin1();
    const int nIndex = QStringView(strCommand).mid(1, 3).toInt();
    const QString strText = strCommand.mid(4);
    if (strCommand == "quit") {
        qApp->quit();
    } else if (cCommand == 'd') {
        m_oForm.deviceTypeForm_Label->setText(m_strDevice = strCommand.mid(1));
    } else if (cCommand == 'w') {
        showWink(strCommand == "w1");
    } else if (cCommand == 'n') {
        showRows(QStringView(strCommand).mid(1).toInt() - 1);
    } else if (cCommand == 'a') {
        (nIndex ? m_oRows[nIndex][3] : m_oForm.appnameForm_Label)->setText(strText);
    } else if (cCommand == 's') {
        (nIndex ? m_oRows[nIndex][1] : m_oForm.plcStatusForm_Label)->setText(strText);
    }
}

void BarePanel::showRows(int nRows)
{
    m_oForm.scrollAreaWidgetContents->hide(); // else all would be laid out again for each
    while (m_oRows.size() < nRows) {
        m_oRows.append({makeLabel(m_oForm.captionLayout, "PLC Status:", true),
                        makeLabel(m_oForm.valueLayout, "", false),
                        makeLabel(m_oForm.captionLayout, "Application Name:", true),
                        makeLabel(m_oForm.valueLayout, "", false)});
    }
    for (int i = 0; i < m_oRows.size(); ++i) {
        for (QLabel* pLabel : qAsConst(m_oRows[i])) {
            pLabel->setVisible(i < nRows);
        }
    }
    m_oForm.scrollAreaWidgetContents->show();
}

bool BarePanel::eventFilter(QObject* pWatched, QEvent* pEvent)
{
    if (pEvent->type() != QEvent::MouseButtonRelease ||
        QScroller::scroller(m_oForm.scrollArea->viewport())->state() == QScroller::Dragging) {
        return false;
    }
    m_oDateLabels.contains(pWatched) ? showDateTimeDialog() : showNetworkDialog();
    return true;
}

void BarePanel::showNetworkDialog()
{
    QDialog oDialog(this);
    oDialog.setStyleSheet(touchSheet(s_nFieldHeight, fontOf(s_nRowFontSize)));
    Ui_NetworkSettingsDialog oForm;
    oForm.setupUi(&oDialog);
    oForm.interfaceList_comboBox->addItems(interfaceNames());
    oForm.useDHCP_comboBox->addItems({"Yes", "No"});
    const QString strName = oForm.interfaceList_comboBox->currentText();
    const QStringList oTexts = addressesOf(strName);
    oForm.ipAddress_LineEdit->setText(oTexts[0]);
    oForm.subnetMask_LineEdit->setText(oTexts[1]);
    oForm.gateway_LineEdit->setText(oTexts[2]);
    connect(oForm.closeButton, SIGNAL(clicked()), &oDialog, SLOT(reject()));
    prepare(oDialog, s_oNetworkDialog);
    oDialog.exec();
}

void BarePanel::showDateTimeDialog()
{
    QDialog oDialog(this);
    oDialog.setStyleSheet(touchSheet(s_nFieldHeight, fontOf(s_nRowFontSize)));
    Ui_DateTimeDialog oForm;
    oForm.setupUi(&oDialog);
    oForm.timezone_ComboBox->setEditable(true);
    auto* pSteps = new QHBoxLayout;
    for (const char* szName : {"stepDown", "stepUp"}) { // of the style sheet
        auto* pStep = new QPushButton(QString(szName) == "stepUp" ? "+" : QStringLiteral("\u2212"));
        pStep->setObjectName(szName);
        pSteps->addWidget(pStep, 1);
    }
    pSteps->insertWidget(1, new QLabel("Day"), 1);
    oForm.formLayout->insertRow(2, "", pSteps);
    class : public QProcess
    {
    } oProcess; // of a class of its own Qt forks it, like the panel's; its other way fails in the emulator
    connect(&oProcess, QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished), &oDialog, [&] {
        const QString strZones = QString(oProcess.readAll()).section('[', 1).section(']', 0, 0).remove('\'');
        oForm.timezone_ComboBox->addItems(strZones.split(", "));
        oForm.timezone_ComboBox->setCurrentText("Europe/Rome");
        oForm.ntpStatus_Label->setText("Last sync:64 secs ago");
    });
    oProcess.start("/usr/bin/kadconfig-gen-timezones.sh", QStringList());
    oForm.autoUpdate_CheckBox->setChecked(
        callService("/ServiceManager", "com.quen.OVIK.ServiceManager", "enabled", {"ntpd"}).toBool());
    oForm.autoUpdate_LineEdit->setText("pool.ntp.org");
    oForm.autoUpdate_LineEdit->setEnabled(oForm.autoUpdate_CheckBox->isChecked());
    oForm.currentDate_DateEdit->setDateTime(QDateTime::currentDateTime());
    connect(oForm.closeButton, SIGNAL(clicked()), &oDialog, SLOT(reject()));
    prepare(oDialog, s_oDateDialog);
    oDialog.exec();
}

// The fields in an area that scrolls, in the panel's look.
void BarePanel::prepare(QDialog& oDialog, const QSize& oSize)
{
    auto* pForm = oDialog.findChild<QFormLayout*>("formLayout");
    auto* pRows = static_cast<QBoxLayout*>(pForm->parent());
    pRows->removeItem(pForm);
    pForm->setParent(nullptr);
    pForm->setContentsMargins(0, 0, 0, 0);
    pForm->setRowWrapPolicy(QFormLayout::DontWrapRows);
    pForm->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    auto* pFields = new QWidget;
    pFields->setObjectName("fields");
    pFields->setLayout(pForm);
    auto* pArea = new QScrollArea;
    pArea->setFrameShape(QFrame::NoFrame);
    pArea->setWidgetResizable(true);
    pArea->setWidget(pFields);
    QScroller::grabGesture(pArea->viewport(), QScroller::LeftMouseButtonGesture);
    pRows->insertWidget(0, pArea);
    const QList<QComboBox*> oComboBoxes = oDialog.findChildren<QComboBox*>();
    for (QComboBox* pComboBox : oComboBoxes) {
        pComboBox->setItemDelegate(new QStyledItemDelegate(pComboBox)); // their own ignores the style sheet
    }
    oDialog.setGeometry(QStyle::alignedRect(Qt::LeftToRight, Qt::AlignCenter, oSize, rect()));
    oDialog.setWindowModality(Qt::WindowModal);
}

void BarePanel::showWink(bool bVisible)
{
    if (!m_pWink) {
        m_pWink = new QWidget;
        Ui_winkHorWidget oForm;
        oForm.setupUi(m_pWink);
        m_pWink->setWindowFlags(Qt::Window | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                                Qt::BypassWindowManagerHint);
        const QString strJson =
            callService("/NetworkManager", "com.quen.OVIK.NetworkManager", "getConfigJSON").toString();
        const QJsonObject oDocument = QJsonDocument::fromJson(strJson.toUtf8()).object();
        oForm.lbl_IP->setText(oDocument.isEmpty() ? QString() : "192.168.1.20");
        oForm.lbl_DeviceName->setText(m_strDevice);
        m_pWink->move((width() - m_pWink->width()) / 2, (height() - m_pWink->height()) / 2);
    }
    m_pWink->setVisible(bVisible);
}

int main(int argc, char* argv[])
{
    QCoreApplication::setAttribute(Qt::AA_ForceRasterWidgets);
    QApplication oApplication(argc, argv);
    BarePanel oPanel;
    std::cout << "First message\n> " << std::flush;
    oPanel.setWindowFlags(Qt::FramelessWindowHint);
    oPanel.showFullScreen();
    return QApplication::exec();
}

#include "barepanel.moc"
