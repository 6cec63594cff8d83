#include "network/networkinterfaceaccess.h"
#include "network/networksettingsdialog.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

static const QStringList s_oFields{"ipAddress_LineEdit", "subnetMask_LineEdit", "gateway_LineEdit"};

/** Stands in for the panel: eth0 with DHCP, all others without, and a list of what it is asked. */
class Panel : public QWidget, public NetworkInterfaceAccess
{
public:
    sNetworkInterfaceDetails getInterfaceDetails(const QString& strName) override
    {
        m_oCalls.append("get " + strName);
        return {strName, "10.0.0.1", "255.0.0.0", "10.0.0.254", "0:a:1b", strName == "eth0"};
    }

    bool setInterfaceDetails(const sNetworkInterfaceDetails& o) override
    {
        m_bBusyShown = m_pBusyMark && m_pBusyMark->isVisible();
        m_oCalls.append(QStringList{"set", o.m_strName, o.m_strIPAddress, o.m_strSubnetMask,
                                    o.m_strStdGateway, o.m_strMacId, o.m_bISDHCP ? "DHCP" : "static"}
                            .join('|'));
        return m_bAccepts;
    }

    QStringList m_oCalls;
    const QWidget* m_pBusyMark = nullptr;
    bool m_bBusyShown = false; // while it was asked to set last
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
        QTest::addColumn<QString>("shownAndAsked");
        const QStringList oNames{"eth0", "eth1"};
        const QString strAddresses = "10.0.0.1|255.0.0.0|10.0.0.254|";
        const QString strNothing = "00:00:00:00:00:00|Yes|||";
        QTest::newRow("first") << oNames << "eth0"
                               << "eth0|0:a:1b|Yes|" + strAddresses + "get eth0";
        QTest::newRow("second") << oNames << "eth1"
                                << "eth1|0:a:1b|No|" + strAddresses + "get eth1|get eth1";
        QTest::newRow("unknown") << oNames << "ETH1"
                                 << "eth0|" + strNothing;
        QTest::newRow("none") << QStringList() << "eth0"
                              << "|" + strNothing;
    }

    void showsTheInterface()
    {
        QFETCH(QStringList, names);
        QFETCH(QString, interface);
        Panel oPanel;
        const NetworkSettingsDialog oDialog(listOf(names), interface, &oPanel);
        QStringList oShown{oDialog.findChild<QComboBox*>("interfaceList_comboBox")->currentText(),
                           oDialog.findChild<QLabel*>("macId_Label")->text(),
                           oDialog.findChild<QComboBox*>("useDHCP_comboBox")->currentText()};
        for (const QString& strField : s_oFields) {
            oShown.append(oDialog.findChild<QLineEdit*>(strField)->text());
        }
        QTEST((oShown + oPanel.m_oCalls).join('|'), "shownAndAsked");
        QCOMPARE(oDialog.windowTitle(), QString("Network Adapter Parameters"));
        QVERIFY(!(oDialog.windowFlags() & Qt::WindowMinMaxButtonsHint));
    }

    void sendsWhatIsShown()
    {
        Panel oPanel;
        NetworkSettingsDialog oDialog(listOf({"eth0", "eth1"}), "eth0", &oPanel);
        oDialog.show();
        oPanel.m_pBusyMark = oDialog.findChild<QWidget*>("busyMark");
        const auto* pApply = oDialog.findChild<QPushButton*>("applyButton");
        const QSignalSpy oApplied(&oDialog, SIGNAL(settingsApplied()));
        oDialog.findChild<QComboBox*>("interfaceList_comboBox")->setCurrentIndex(1);
        for (const char* szUseDHCP : {"Yes", "No", "Yes"}) {
            oDialog.findChild<QComboBox*>("useDHCP_comboBox")->setCurrentText(szUseDHCP);
            for (const QString& strField : s_oFields) {
                auto* pField = oDialog.findChild<QLineEdit*>(strField);
                pField->clear();
                QTest::keyClicks(pField, " no <address>\t");
            }
        }
        // What is refused stays for another attempt.
        const QString strSent = "set|eth1| no <address>| no <address>| no <address>||DHCP";
        for (const bool bAccepts : {false, true}) {
            oPanel.m_oCalls.clear();
            oPanel.m_bAccepts = bAccepts;
            oDialog.findChild<QPushButton*>("applyButton")->click();
            QCOMPARE(oPanel.m_oCalls, QStringList(strSent));
            QCOMPARE(oApplied.count(), bAccepts ? 1 : 0);
            QVERIFY(oPanel.m_bBusyShown);
            QTRY_VERIFY(!oPanel.m_pBusyMark->isVisible());
            QCOMPARE(pApply->icon().isNull(), !bAccepts); // a tick
        }
        QVERIFY(oDialog.isVisible());
        oDialog.findChild<QPushButton*>("closeButton")->click();
        QVERIFY(!oDialog.isVisible());
    }

    // Without anyone to ask, or with a parent that cannot answer, it shows names only.
    void needsNoPanel()
    {
        QWidget oOther;
        for (QWidget* pParent : {static_cast<QWidget*>(nullptr), &oOther}) {
            NetworkSettingsDialog oDialog(listOf({"eth0", "eth1"}), "eth1", pParent);
            const QSignalSpy oApplied(&oDialog, SIGNAL(settingsApplied()));
            oDialog.findChild<QPushButton*>("applyButton")->click();
            QCOMPARE(oApplied.count(), 0);
            QCOMPARE(oDialog.findChild<QComboBox*>("interfaceList_comboBox")->currentText(), QString("eth1"));
            QCOMPARE(oDialog.findChild<QLineEdit*>("ipAddress_LineEdit")->text(), QString());
        }
    }

private:
    static QList<sNetworkInterfaceDetails> listOf(const QStringList& oNames)
    {
        QList<sNetworkInterfaceDetails> oList;
        for (const QString& strName : oNames) {
            oList.append({strName, {}, {}, {}, {}, false});
        }
        return oList;
    }
};

QTEST_MAIN(TestNetworkSettingsDialog)
#include "tst_networksettingsdialog.moc"
