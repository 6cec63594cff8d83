#include "support/panelprocess.h"

#include <QTest>

namespace {

// The index of the last line has no row, so the log shows when it was executed.
const QByteArray s_oManyTexts =
    "dCompact controller 500/600, long name of a device type\nv3.5.19.10 (r12345)\nn20\n"
    "a000Förderband Юท泵 Ế and a name that goes on\na001Юท泵 Ế\ns019x\n";

// Returns the smallest rectangle around all dark pixels that a widget paints, on the screen.
QRect inkOf(PanelProcess& oPanel, const QString& strName)
{
    const QImage oPicture = oPanel.picture(strName).convertToFormat(QImage::Format_ARGB32);
    QRect oInk;
    for (int y = 0; y < oPicture.height(); ++y) {
        for (int x = 0; x < oPicture.width(); ++x) {
            const QRgb nPixel = oPicture.pixel(x, y);
            if (qAlpha(nPixel) > 128 && qGray(nPixel) < 140) {
                oInk |= QRect(x, y, 1, 1);
            }
        }
    }
    return oInk.translated(oPanel.widget(strName).rect().topLeft());
}

} // namespace

/** The panel's window on screens of the device. */
class TestWindow : public QObject
{
    Q_OBJECT

private slots:
    void fitsScreen_data()
    {
        QTest::addColumn<QRect>("screen");
        QTest::newRow("272x480") << QRect(0, 0, 272, 480);
        QTest::newRow("480x272") << QRect(0, 0, 480, 272);
        QTest::newRow("481x320") << QRect(0, 0, 481, 320);
        QTest::newRow("1280x800") << QRect(0, 0, 1280, 800);
    }

    void fitsScreen()
    {
        QFETCH(QRect, screen);
        const VirtualDisplay oDisplay(screen.size());
        PanelProcess oPanel(oDisplay.name());
        QVERIFY(oPanel.start());
        QTRY_COMPARE(oPanel.widget("MorvaWidget").rect(), screen);
        oPanel.send("n9\nv255.255.255.255\n"); // fits beside captions and scroll bar
        QCOMPARE(oPanel.waitForText("targetVersionForm_Label", "255.255.255.255"), "255.255.255.255");
        QTRY_VERIFY(oPanel.widget("scrollAreaWidgetContents").rect().width() <=
                    oPanel.widget("qt_scrollarea_viewport").rect().width());

        oPanel.send(s_oManyTexts);
        QVERIFY(oPanel.waitForLog("idx: 19  size:  19"));
        const QRect oContents = oPanel.widget("scrollAreaWidgetContents").rect();
        const QList<sWidget> oWidgets = oPanel.widgets();
        QRegion aTaken[2];
        for (const sWidget& oWidget : oWidgets) {
            if (!oWidget.isVisibleLabel() && oWidget.name() != "toolButton") {
                continue;
            }
            const QByteArray oWhat = (oWidget.name() + ' ' + oWidget.text()).toUtf8();
            const bool bBanner = oWidget["parent"] == "banner";
            const QRect oRect = oWidget.rect();
            QVERIFY2(!aTaken[bBanner].intersects(oRect), oWhat);
            aTaken[bBanner] += oRect;
            QVERIFY2((bBanner ? screen : oContents).contains(oRect), oWhat);
            QVERIFY2(oRect.size().expandedTo(oWidget.rect("minimum").size()) == oRect.size(),
                     oWhat); // not cut
            QVERIFY2(oWidget["plain"].toBool(oWidget.name() == "toolButton"), oWhat);
        }
        for (const QString strPicture : {"toolButton", "logo"}) {
            const int nWidth = inkOf(oPanel, strPicture).width();
            QVERIFY2(nWidth > 25, qPrintable(strPicture + QString::number(nWidth)));
        }
    }

    void captionsEndWhereValuesBegin()
    {
        PanelProcess oPanel({}, "exec " PANEL_PROGRAM " -reverse");
        QVERIFY(oPanel.start());
        oPanel.send("dמכשיר\nvabc\n");
        QCOMPARE(oPanel.waitForText("targetVersionForm_Label", "abc"), "abc");
        for (const QString strRow : {"deviceType", "targetVersion"}) {
            const int nGap =
                inkOf(oPanel, strRow + "Form_Label").left() - inkOf(oPanel, strRow + "_Label").right();
            QVERIFY2(nGap > 0 && nGap < 20, qPrintable(strRow + QString::number(nGap)));
        }
    }

    // The row that the drag began on disappears, so no widget gets the release.
    void tapsCountAfterRowsWentDuringADrag_data()
    {
        QTest::addColumn<QString>("press"); // and how the finger moves then
        const QString strMove = " mousemove 300 600 sleep 0.02 mousemove 300 420";
        QTest::newRow("at once") << "mousemove 300 900 mousedown 1 sleep 0.02" + strMove;
        QTest::newRow("after a rest") << "mousemove 300 900 mousedown 1 sleep 0.5" + strMove;
        QTest::newRow("without moving") << "mousemove 300 900 mousedown 1 sleep 0.5";
    }

    void tapsCountAfterRowsWentDuringADrag()
    {
        QFETCH(QString, press);
        const VirtualDisplay oDisplay({600, 1024});
        PanelProcess oPanel(oDisplay.name());
        QVERIFY(oPanel.start());
        oPanel.send("n30\nvmany\n");
        QCOMPARE(oPanel.waitForText("targetVersionForm_Label", "many"), "many");
        QVERIFY(oDisplay.pointer(press));
        oPanel.send("n1\nvfew\n");
        QCOMPARE(oPanel.waitForText("targetVersionForm_Label", "few"), "few");
        QVERIFY(oDisplay.pointer("mousemove 300 400 mouseup 1 sleep 0.3"));
        QVERIFY(!oPanel.widget("DateTimeDialog")["visible"].toBool());
        QVERIFY(oDisplay.tap(oPanel.widget("systemTimeForm_Label").rect().center()));
        QVERIFY(oPanel.waitForVisible("DateTimeDialog"));
    }

    void windowManagerCannotCloseIt()
    {
        const VirtualDisplay oDisplay({800, 480});
        ChildProcess oManager;
        const QString strManager =
            "DISPLAY=%1 openbox --sm-disable --startup 'echo ready' | grep --line-buffered ready";
        QCOMPARE(oManager.startAndReadLine("sh", {"-c", strManager.arg(oDisplay.name())}), "ready");
        PanelProcess oPanel(oDisplay.name());
        QVERIFY(oPanel.start());
        QTRY_COMPARE(oPanel.widget("MorvaWidget").rect(), QRect(0, 0, 800, 480));
        QCOMPARE(oPanel.widget("MorvaWidget")["flags"].toInt(), Qt::FramelessWindowHint | Qt::Window);
        QVERIFY(oDisplay.pointer("sleep 0.5 key alt+F4 sleep 0.5"));
        QVERIFY(oPanel.widget("MorvaWidget")["visible"].toBool());
        QCOMPARE(oPanel.quit(), 0);
    }
};

QTEST_GUILESS_MAIN(TestWindow)
#include "tst_window.moc"
