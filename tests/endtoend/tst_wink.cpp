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
        QTest::addColumn<QRect>("screen");
        QTest::addColumn<QString>("name");
        QTest::newRow("winkVerWidget, cut")
            << QRect(0, 0, 272, 480) << "<i>Controller</i> 500/600 of hall 7, press line 12, no. 4711";
        QTest::newRow("winkVerWidget") << QRect(0, 0, 480, 271) << "";
        QTest::newRow("winkHorWidget")
            << QRect(0, 0, 481, 320)
            << "OneWordOfSoManyLettersThatNoLabelOfTheOverlayHasRoomForItOnOneLineOrTwo";
    }

    void identifiesTheDevice()
    {
        QFETCH(QRect, screen);
        QFETCH(QString, name);
        const QString strOverlay = QString(QTest::currentDataTag()).section(',', 0, 0);
        const QString strDocument =
            R"({"version":1,"interfaces":[{"name":"e","hidden":false,"actual_ip_address":"%1"}]})";
        PrivateBus oBus;
        SimulatorProcess oService;
        QVERIFY(oBus.start() && oService.start(oBus) &&
                oService.setDocument(strDocument.arg("192.168.100.200")));
        qputenv("DBUS_SYSTEM_BUS_ADDRESS", oBus.address().toUtf8());
        const VirtualDisplay oDisplay(screen.size());
        PanelProcess oPanel(oDisplay.name());
        QVERIFY(oPanel.start());
        // The last name before the first wink counts, also if it is empty.
        oPanel.send("dFirst\nd" + name.toUtf8() + "\nw0\nw2\nw\nW1\nv1\n");
        QCOMPARE(oPanel.waitForText("targetVersionForm_Label", "1"), "1");
        QVERIFY(oPanel.widget(strOverlay).isEmpty());
        oPanel.send("w1abc\ndLast\n");
        QVERIFY(oPanel.waitForVisible(strOverlay));
        const QPoint oBeside = oPanel.widget(strOverlay).rect().center() - screen.center();
        QVERIFY(oBeside.manhattanLength() <= 1); // half a pixel is rounded
        QCOMPARE(oPanel.widget(strOverlay)["flags"].toInt(), 0x40801);

        QVERIFY(oPanel.widget("lbl_DeviceName")["plain"].toBool());
        QStringList oShown;
        QRegion oTaken = oPanel.widget("label").rect();
        for (const char* szName : {"label_2", "label_3", "label_5", "lbl_DeviceName", "lbl_IP"}) {
            const sWidget oLabel = oPanel.widget(szName);
            oShown.append(oLabel.text());
            const QSize oSeen = oLabel.rect().intersected(screen).size();
            QVERIFY2(oSeen.expandedTo(oLabel.rect("minimum").size()) == oSeen, szName); // not cut
            QVERIFY2(!oTaken.intersects(oLabel.rect()), szName);
            oTaken += oLabel.rect();
        }
        QCOMPARE(oShown.join('|'), "WINK Command Active|Device:|IP Address:|" + name + "|192.168.100.200");
        // The name has as many lines as it needs, and the texts stay where they are while the hand blinks.
        const QRect oAddress = oPanel.widget("lbl_IP").rect();
        QCOMPARE(oPanel.widget("lbl_DeviceName").rect().height() > 2 * oAddress.height(), !name.isEmpty());
        for (const bool bVisible : {false, true}) {
            QVERIFY(oPanel.waitForVisible("label", bVisible));
            QCOMPARE(oPanel.widget("lbl_IP").rect(), oAddress);
        }
        oService.kill();
        QCOMPARE(oPanel.waitForText("lbl_IP", QString()), QString());
        oPanel.send("w0\n");
        QVERIFY(oPanel.waitForVisible(strOverlay, false));
    }
};

QTEST_GUILESS_MAIN(TestWink)
#include "tst_wink.moc"
