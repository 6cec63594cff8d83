#include "network/networkinterfaceaccess.h"
#include "network/networksettingsdialog.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

/** Stands in for the panel: two interfaces, and a list of what it is asked. */
class Panel : public QWidget, public NetworkInterfaceAccess
{
public:
    sNetworkInterfaceDetails getInterfaceDetails(const QString& strName) override
    {
        m_oCalls.append("get " + strName);
        sNetworkInterfaceDetails oDetails;
        oDetails.m_strName = strName;
        oDetails.m_strIPAddress = strName == "eth0" ? "10.0.0.1" : "10.0.0.2";
        oDetails.m_strSubnetMask = "255.0.0.0";
        oDetails.m_strStdGateway = "10.0.0.254";
        oDetails.m_strMacId = "0:a:1b";
        oDetails.m_bISDHCP = strName == "eth0";
        return oDetails;
    }

    bool setInterfaceDetails(const sNetworkInterfaceDetails& o) override
    {
        m_oCalls.append(QStringList{"set", o.m_strName, o.m_strIPAddress, o.m_strSubnetMask,
                                    o.m_strStdGateway, o.m_strMacId, o.m_bISDHCP ? "DHCP" : "static"}
                            .join('|'));
        return m_bAccepts;
    }

    QStringList m_oCalls;
    bool m_bAccepts = true;
};

class TestNetworkSettingsDialog : public QObject
{
    Q_OBJECT

private slots:
    void showsTheInterface_data()
    {
        QTest::addColumn<QStringList>("names");
        QTest::addColumn<QString>("interface");
        QTest::addColumn<QString>("shown");
        QTest::addColumn<QStringList>("calls");
        const QStringList oNames{"eth0", "eth1"};
        QTest::newRow("first") << oNames << "eth0"
                               << "eth0|0:a:1b|Yes|10.0.0.1|255.0.0.0|10.0.0.254" << QStringList{"get eth0"};
        QTest::newRow("second") << oNames << "eth1"
                                << "eth1|0:a:1b|No|10.0.0.2|255.0.0.0|10.0.0.254"
                                << QStringList{"get eth1", "get eth1"};
        QTest::newRow("unknown") << oNames << "ETH1"
                                 << "eth0|00:00:00:00:00:00|Yes|||" << QStringList();
        QTest::newRow("none") << QStringList() << "eth0"
                              << "|00:00:00:00:00:00|Yes|||" << QStringList();
    }

    void showsTheInterface()
    {
        QFETCH(QStringList, names);
        QFETCH(QString, interface);
        QFETCH(QString, shown);
        QFETCH(QStringList, calls);
        Panel oPanel;
        const NetworkSettingsDialog oDialog(listOf(names), interface, &oPanel);
        QCOMPARE(textsOf(oDialog), shown);
        QCOMPARE(oPanel.m_oCalls, calls);
        QCOMPARE(oDialog.windowTitle(), QString("Network Adapter Parameters"));
        QVERIFY(!(oDialog.windowFlags() & Qt::WindowMinMaxButtonsHint));
    }

    void sendsWhatIsShown()
    {
        Panel oPanel;
        NetworkSettingsDialog oDialog(listOf({"eth0", "eth1"}), "eth0", &oPanel);
        oDialog.show();
        const QSignalSpy oApplied(&oDialog, SIGNAL(settingsApplied()));
        auto* pApply = oDialog.findChild<QPushButton*>("applyButton");
        oDialog.findChild<QComboBox*>("interfaceList_comboBox")->setCurrentIndex(1);
        for (const char* szUseDHCP : {"Yes", "No", "Yes"}) {
            oDialog.findChild<QComboBox*>("useDHCP_comboBox")->setCurrentText(szUseDHCP);
            for (const char* szField : {"ipAddress_LineEdit", "subnetMask_LineEdit", "gateway_LineEdit"}) {
                auto* pField = oDialog.findChild<QLineEdit*>(szField);
                pField->clear();
                QTest::keyClicks(pField, " no <address>\t");
            }
        }
        oPanel.m_oCalls.clear();
        pApply->click();
        const QString strSent = "set|eth1| no <address>| no <address>| no <address>||DHCP";
        QCOMPARE(oPanel.m_oCalls, QStringList(strSent));
        QCOMPARE(oApplied.count(), 1);

        // What is refused stays for another attempt.
        oPanel.m_bAccepts = false;
        pApply->click();
        QCOMPARE(oPanel.m_oCalls, QStringList({strSent, strSent}));
        QCOMPARE(oApplied.count(), 1);
        QVERIFY(oDialog.isVisible());
        oDialog.findChild<QPushButton*>("closeButton")->click();
        QVERIFY(!oDialog.isVisible());
    }

private:
    static QList<sNetworkInterfaceDetails> listOf(const QStringList& oNames)
    {
        QList<sNetworkInterfaceDetails> oList;
        for (const QString& strName : oNames) {
            oList.append(sNetworkInterfaceDetails());
            oList.last().m_strName = strName;
        }
        return oList;
    }

    static QString textsOf(const QDialog& oDialog)
    {
        QStringList oTexts{oDialog.findChild<QComboBox*>("interfaceList_comboBox")->currentText(),
                           oDialog.findChild<QLabel*>("macId_Label")->text(),
                           oDialog.findChild<QComboBox*>("useDHCP_comboBox")->currentText()};
        for (const char* szField : {"ipAddress_LineEdit", "subnetMask_LineEdit", "gateway_LineEdit"}) {
            oTexts.append(oDialog.findChild<QLineEdit*>(szField)->text());
        }
        return oTexts.join('|');
    }
};

QTEST_MAIN(TestNetworkSettingsDialog)
#include "tst_networksettingsdialog.moc"
