#include "network/networkinterfaceaccess.h"
#include "network/networksettingsdialog.h"

#include <QtTest>
#include <QtWidgets>

constexpr const char* s_aFields[] = {"ipAddress_LineEdit", "subnetMask_LineEdit", "gateway_LineEdit"};

/** Stands in for the replies of the service. */
class Replies : public QObject
{
    Q_OBJECT

signals:
    void finished(bool bTaken); // NOLINT(readability-inconsistent-declaration-parameter-name): moc defines it
};

/** Stands in for the panel: eth0 with DHCP, all others without, and a list of what it is asked. */
class Panel : public QWidget, public NetworkInterfaceAccess
{
public:
    sNetworkInterfaceDetails getInterfaceDetails(const QString& strName) override
    {
        m_oCalls += "get " + strName;
        return {strName, "10.0.0.1", "255.0.0.0", "10.0.0.254", "0:a:1b", strName == "eth0"};
    }

    bool setInterfaceDetails(const sNetworkInterfaceDetails& o) override
    {
        m_oCalls += QStringList{findChild<QWidget*>("busyMark")->isVisible() ? "busy" : "",
                                o.m_strName,
                                o.m_strIPAddress,
                                o.m_strSubnetMask,
                                o.m_strStdGateway,
                                o.m_strMacId,
                                o.m_bISDHCP ? "DHCP" : "static"};
        return m_bAccepts;
    }

    QObject* watchReplies() override { return &m_oReplies; }

    Replies m_oReplies;
    QStringList m_oCalls;
    bool m_bAccepts = true;
};

class TestNetworkSettingsDialog : public QObject
{
    Q_OBJECT

private slots:
    void readsTheInterface()
    {
        const std::pair<const char*, const char*> aRows[] = {
            {"eth0", "get eth0"}, {"eth1", "get eth1|get eth1"}, {"ETH1", ""}};
        for (const auto& [szInterface, szCalls] : aRows) {
            Panel oPanel;
            const NetworkSettingsDialog oDialog(m_oInterfaces, szInterface, &oPanel);
            QCOMPARE(oPanel.m_oCalls.join('|'), szCalls);
            QCOMPARE(oDialog.windowTitle(), "Network Adapter Parameters");
            QVERIFY(!(oDialog.windowFlags() & Qt::WindowMinMaxButtonsHint));
        }
    }

    void sendsWhatIsShown()
    {
        Panel oPanel;
        NetworkSettingsDialog oDialog(m_oInterfaces, "eth0", &oPanel);
        oDialog.show();
        auto* pApply = oDialog.findChild<QPushButton*>("applyButton");
        auto* pUseDHCP = oDialog.findChild<QComboBox*>("useDHCP_comboBox");
        QCOMPARE(pUseDHCP->currentText(), "Yes");
        oDialog.findChild<QComboBox*>("interfaceList_comboBox")->setCurrentIndex(1);
        QStringList oShown{oDialog.findChild<QLabel*>("macId_Label")->text(), pUseDHCP->currentText()};
        for (const char* szField : s_aFields) {
            oShown += oDialog.findChild<QLineEdit*>(szField)->text();
        }
        QCOMPARE(oShown.join('|'), "0:a:1b|No|10.0.0.1|255.0.0.0|10.0.0.254");
        pUseDHCP->setCurrentText("Yes"); // locks no field
        for (const char* szField : s_aFields) {
            auto* pField = oDialog.findChild<QLineEdit*>(szField);
            pField->clear();
            QTest::keyClicks(pField, ' ' + QString(szField).left(7) + " <1>\t");
        }
        // What is refused stays for another attempt, which takes the place of the one before.
        const auto* pBusyMark = oDialog.findChild<QWidget*>("busyMark");
        const QSignalSpy oSpy(&oDialog, SIGNAL(settingsApplied()));
        for (const bool bAccepts : {true, false, true}) {
            oPanel.m_oCalls.clear();
            oPanel.m_bAccepts = bAccepts;
            pApply->click();
            QCOMPARE(oPanel.m_oCalls.join('|'), "busy|eth1| ipAddre <1>| subnetM <1>| gateway <1>||DHCP");
            QTRY_COMPARE(pBusyMark->isVisible(), bAccepts);
            QVERIFY(pApply->icon().isNull());
        }
        QCOMPARE(oSpy.size(), 2);
        emit oPanel.m_oReplies.finished(true);
        QVERIFY(!pApply->icon().isNull() && !pBusyMark->isVisible()); // a tick
        QVERIFY(oDialog.isVisible());
        oDialog.findChild<QPushButton*>("closeButton")->click();
        QVERIFY(!oDialog.isVisible());
    }

private:
    const QList<sNetworkInterfaceDetails> m_oInterfaces{{"eth0", "", "", "", "", false},
                                                        {"eth1", "", "", "", "", false}};
};

QTEST_MAIN(TestNetworkSettingsDialog)
#include "tst_networksettingsdialog.moc"
