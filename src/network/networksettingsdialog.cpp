#include "network/networksettingsdialog.h"

#include "network/networkinterfaceaccess.h"
#include "touch/busymark.h"
#include "ui_networksettingsdialog.h"

#include <QDebug>
#include <QSignalBlocker>

namespace {

enum eUseDHCP { eUseDHCP_Yes = 0, eUseDHCP_No = 1 }; // the items of the DHCP combo box

} // namespace

NetworkSettingsDialog::NetworkSettingsDialog(const QList<sNetworkInterfaceDetails>& oInterfacesList,
                                             const QString& strInterfaceName, QWidget* pParent)
    : QDialog(pParent), ui(new Ui_NetworkSettingsDialog)
{
    ui->setupUi(this);
    setWindowTitle(tr("Network Adapter Parameters"));
    setWindowFlags(windowFlags() & ~Qt::WindowMinMaxButtonsHint);
    connect(ui->interfaceList_comboBox, SIGNAL(currentTextChanged(QString)), this,
            SLOT(onCurrentNetInterfaceChanged(QString)));
    connect(ui->useDHCP_comboBox, SIGNAL(currentTextChanged(QString)), this,
            SLOT(onDHCPCurrentIndexChanged(QString)));
    m_pBusyMark = new BusyMark(ui->applyButton);
    connect(ui->applyButton, SIGNAL(clicked()), this, SLOT(onApplyClicked()));
    connect(ui->closeButton, SIGNAL(clicked()), this, SLOT(reject()));
    populateUI(oInterfacesList, strInterfaceName);
}

NetworkSettingsDialog::~NetworkSettingsDialog()
{
    delete ui;
}

void NetworkSettingsDialog::populateUI(const QList<sNetworkInterfaceDetails>& oInterfacesList,
                                       const QString& strInterfaceName)
{
    QStringList strNamesList;
    for (const sNetworkInterfaceDetails& oDetails : oInterfacesList) {
        strNamesList.append(oDetails.m_strName);
    }
    {
        const QSignalBlocker oBlocker(ui->interfaceList_comboBox);
        ui->interfaceList_comboBox->addItems(strNamesList);
    }
    {
        const QSignalBlocker oBlocker(ui->useDHCP_comboBox);
        ui->useDHCP_comboBox->addItems({tr("Yes"), tr("No")});
    }
    const int nIndex =
        ui->interfaceList_comboBox->findText(strInterfaceName, Qt::MatchExactly | Qt::MatchCaseSensitive);
    if (nIndex < 0) {
        return;
    }
    ui->interfaceList_comboBox->setCurrentIndex(nIndex);
    onCurrentNetInterfaceChanged(strInterfaceName); // the item may already have been current
}

NetworkInterfaceAccess* NetworkSettingsDialog::interfaceAccess() const
{
    return dynamic_cast<NetworkInterfaceAccess*>(parentWidget());
}

void NetworkSettingsDialog::onCurrentNetInterfaceChanged(QString strInterfaceName)
{
    NetworkInterfaceAccess* pAccess = interfaceAccess();
    if (!pAccess) {
        return;
    }
    const sNetworkInterfaceDetails oDetails = pAccess->getInterfaceDetails(strInterfaceName);
    ui->macId_Label->setText(oDetails.m_strMacId);
    ui->ipAddress_LineEdit->setText(oDetails.m_strIPAddress);
    ui->subnetMask_LineEdit->setText(oDetails.m_strSubnetMask);
    ui->gateway_LineEdit->setText(oDetails.m_strStdGateway);
    const QSignalBlocker oBlocker(ui->useDHCP_comboBox);
    ui->useDHCP_comboBox->setCurrentIndex(oDetails.m_bISDHCP ? eUseDHCP_Yes : eUseDHCP_No);
}

void NetworkSettingsDialog::onDHCPCurrentIndexChanged(QString strUseDHCP)
{
    Q_UNUSED(strUseDHCP) // Kept, see docs/compatibility.md
}

void NetworkSettingsDialog::onApplyClicked()
{
    m_pBusyMark->start();
    saveValues();
}

void NetworkSettingsDialog::saveValues()
{
    sNetworkInterfaceDetails oNetworkInterfaceDetails;
    oNetworkInterfaceDetails.m_strName = ui->interfaceList_comboBox->currentText();
    oNetworkInterfaceDetails.m_strIPAddress = ui->ipAddress_LineEdit->text();
    oNetworkInterfaceDetails.m_strSubnetMask = ui->subnetMask_LineEdit->text();
    oNetworkInterfaceDetails.m_strStdGateway = ui->gateway_LineEdit->text();
    oNetworkInterfaceDetails.m_bISDHCP = ui->useDHCP_comboBox->currentIndex() == eUseDHCP_Yes;
    NetworkInterfaceAccess* pAccess = interfaceAccess();
    if (!pAccess || !pAccess->setInterfaceDetails(oNetworkInterfaceDetails)) {
        qWarning() << "saveValues failed: the settings were not sent for"
                   << oNetworkInterfaceDetails.m_strName;
        m_pBusyMark->finish(false);
        return;
    }
    m_pBusyMark->finishWith(pAccess->watchReplies());
    emit settingsApplied();
}
