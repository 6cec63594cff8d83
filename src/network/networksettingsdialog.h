#pragma once

#include "network/networkinterfacedetails.h"

#include <QDialog>
#include <QList>

class BusyMark;
class NetworkInterfaceAccess;
class Ui_NetworkSettingsDialog;

/**
 * The form in which the operator changes the IPv4 settings of one network interface.
 *
 * It reads and writes through its parent, does not validate input, and stays open until it is closed. Its
 * only state is what its widgets show.
 */
class NetworkSettingsDialog : public QDialog
{
    Q_OBJECT

public:
    /**
     * Builds the dialog and reads the settings of an interface through the parent.
     * @param oInterfacesList the interfaces to choose from; only their names are used
     * @param strInterfaceName the interface shown first; if it is not in the list, no settings are read
     * @param pParent a widget that is a NetworkInterfaceAccess as well; without one the dialog shows names
     *                only, and Apply does nothing
     */
    NetworkSettingsDialog(const QList<sNetworkInterfaceDetails>& oInterfacesList,
                          const QString& strInterfaceName, QWidget* pParent);
    /** Deletes the form. */
    ~NetworkSettingsDialog() override;

signals:
    /** The settings were sent; the service may still refuse them. */
    void settingsApplied();

private slots:
    void onCurrentNetInterfaceChanged(QString strInterfaceName);
    void onDHCPCurrentIndexChanged(QString strUseDHCP);
    void onApplyClicked();
    void saveValues();

private:
    void populateUI(const QList<sNetworkInterfaceDetails>& oInterfacesList, const QString& strInterfaceName);
    NetworkInterfaceAccess* interfaceAccess() const;

    Ui_NetworkSettingsDialog* ui;
    BusyMark* m_pBusyMark = nullptr; // on Apply, until the service has replied
};
