#include "support/panelprocess.h"
#include "support/privatebus.h"
#include "support/simulatorprocess.h"

#include <QTest>

/** The overlay of the real program on the screens of the device. */
class TestWink : public QObject
{
    Q_OBJECT

private slots:
    void identifiesTheDevice_data()
    {
        QTest::addColumn<QSize>("screen");
        QTest::addColumn<QRect>("rect");
        QTest::addColumn<QString>("name");
        QTest::newRow("winkVerWidget, cut") << QSize(272, 480) << QRect(-29, 122, 330, 235)
                                            << "<i>Controller</i> 500/600 of hall 7, press line 12, no. 4711";
        QTest::newRow("winkVerWidget") << QSize(480, 271) << QRect(75, 18, 330, 235) << "";
        QTest::newRow("winkHorWidget")
            << QSize(481, 320) << QRect(30, 84, 420, 151)
            << "OneWordOfSoManyLettersThatNoLabelOfTheOverlayHasRoomForItOnOneLineOrTwo";
    }

    void identifiesTheDevice()
    {
        QFETCH(QSize, screen);
        QFETCH(QString, name);
        const QString strOverlay = QString(QTest::currentDataTag()).section(',', 0, 0);
        const QString strDocument = "{\"version\":1,\"interfaces\":[{\"name\":\"e\",\"hidden\":false,"
                                    "\"actual_ip_address\":\"%1\"}]}";
        PrivateBus oBus;
        SimulatorProcess oService;
        QVERIFY(oBus.start() && oService.start(oBus));
        QVERIFY(oService.setDocument(strDocument.arg("192.168.100.200")));
        qputenv("DBUS_SYSTEM_BUS_ADDRESS", oBus.address().toUtf8());
        const Display oDisplay(screen);
        PanelProcess oPanel(oDisplay.name());
        QVERIFY(oPanel.start());
        // The last name before the first wink counts, also if it is empty.
        oPanel.send("dFirst\nd" + name.toUtf8() + "\nw0\nw2\nw\nW1\nv1\n");
        QCOMPARE(oPanel.waitForText("targetVersionForm_Label", "1"), QString("1"));
        QVERIFY(oPanel.widget(strOverlay).isEmpty());
        oPanel.send("w1abc\ndLast\n");
        QVERIFY(oPanel.waitForVisible(strOverlay));
        QTEST(oPanel.widget(strOverlay).rect(), "rect");
        QCOMPARE(oPanel.widget(strOverlay)["flags"].toInt(), 0x40801);

        QVERIFY(oPanel.widget("lbl_DeviceName")["plain"].toBool());
        QStringList oShown;
        QRegion oTaken = oPanel.widget("label").rect();
        for (const char* szName : {"label_2", "label_3", "label_5", "lbl_DeviceName", "lbl_IP"}) {
            const sWidget oLabel = oPanel.widget(szName);
            oShown.append(oLabel.text());
            const QSize oSeen = oLabel.rect().intersected(QRect(QPoint(), screen)).size();
            QVERIFY2(oSeen.expandedTo(oLabel.rect("minimum").size()) == oSeen, szName); // not cut
            QVERIFY2(!oTaken.intersects(oLabel.rect()), szName);
            oTaken += oLabel.rect();
        }
        QCOMPARE(oShown.join('|'), "WINK Command Active|Device:|IP Address:|" + name + "|192.168.100.200");
        // The name has as many lines as it needs, and the texts stay where they are while the hand blinks.
        const QRect oAddress = oPanel.widget("lbl_IP").rect();
        const int nNameHeight = oPanel.widget("lbl_DeviceName").rect().height();
        QCOMPARE(nNameHeight > 2 * oAddress.height(), !name.isEmpty());
        for (const bool bVisible : {false, true}) {
            QVERIFY(oPanel.waitForVisible("label", bVisible));
            QCOMPARE(oPanel.widget("lbl_IP").rect(), oAddress);
        }
        QVERIFY(oService.setDocument(strDocument.arg("10.0.0.7")));
        QCOMPARE(oPanel.waitForText("lbl_IP", "10.0.0.7"), QString("10.0.0.7"));
        oService.kill();
        QCOMPARE(oPanel.waitForText("lbl_IP", QString()), QString());
        oPanel.send("w0\n");
        QVERIFY(oPanel.waitForVisible(strOverlay, false));
        QCOMPARE(oPanel.quit(), 0);
    }
};

QTEST_GUILESS_MAIN(TestWink)
#include "tst_wink.moc"
