#include "support/panelprocess.h"

#include <QImage>
#include <QTest>

namespace {

// The log shows when the last line, whose index has no row, is reached.
const QByteArray s_oManyTexts =
    "dCompact controller 500/600, long name of a device type\nv3.5.19.10 (r12345)\nn20\n"
    "a000Förderband Юท泵 Ế and a name that goes on\na001Юท泵 Ế\ns019x\n";

// Returns the smallest rectangle around all that is dark in a part of the screen.
QRect inkIn(const QImage& oScreen, const QRect& oPart)
{
    QRect oInk;
    for (int y = oPart.top(); y <= oPart.bottom(); ++y) {
        for (int x = oPart.left(); x <= oPart.right(); ++x) {
            if (oScreen.valid(x, y) && qGray(oScreen.pixel(x, y)) < 140) {
                oInk |= QRect(x, y, 1, 1);
            }
        }
    }
    return oInk;
}

QImage picture(const Display& oDisplay)
{
    const QString strFile = "/tmp/screen.png";
    QProcess::execute("import", {"-display", oDisplay.name(), "-window", "root", strFile});
    return QImage(strFile);
}

} // namespace

/** The panel's window on screens of the device. */
class TestWindow : public QObject
{
    Q_OBJECT

private slots:
    void fitsScreen_data()
    {
        QTest::addColumn<QSize>("screen");
        QTest::addColumn<int>("scrollBar"); // the metrics change with the width
        QTest::newRow("272x480") << QSize(272, 480) << 20;
        QTest::newRow("273x480") << QSize(273, 480) << 24;
        QTest::newRow("480x272") << QSize(480, 272) << 24;
        QTest::newRow("481x320") << QSize(481, 320) << 32;
        QTest::newRow("1280x800") << QSize(1280, 800) << 32;
    }

    void fitsScreen()
    {
        QFETCH(QSize, screen);
        const Display oDisplay(screen);
        PanelProcess oPanel(oDisplay.name());
        QVERIFY(oPanel.start());
        QTRY_COMPARE(oPanel.widget("MorvaWidget").rect(), QRect(QPoint(), screen));
        oPanel.send("n9\nv255.255.255.255\n"); // fits beside captions and scroll bar
        QCOMPARE(oPanel.waitForText("targetVersionForm_Label", "255.255.255.255"),
                 QString("255.255.255.255"));
        const QRect oViewport = oPanel.widget("qt_scrollarea_viewport").rect();
        QTRY_VERIFY(oPanel.widget("scrollAreaWidgetContents").rect().width() <= oViewport.width());
        QTEST(screen.width() - 1 - oViewport.right(), "scrollBar");

        oPanel.send(s_oManyTexts);
        QVERIFY(oPanel.waitForLog("idx: 19  size:  19"));
        const QList<sWidget> oWidgets = oPanel.widgets();
        const QRect oContents = oPanel.widget("scrollAreaWidgetContents").rect();
        QRegion oBanner;
        QRegion oRows;
        for (const sWidget& oWidget : oWidgets) {
            if (!oWidget.isVisibleLabel() && oWidget.name() != "toolButton") {
                continue;
            }
            const QByteArray oWhat = (oWidget.name() + " " + oWidget.text()).toUtf8();
            const bool bBanner = oWidget["parent"] == "banner";
            const QRect oRect = oWidget.rect();
            QRegion& oTaken = bBanner ? oBanner : oRows;
            QVERIFY2(!oTaken.intersects(oRect), "overlaps: " + oWhat);
            oTaken += oRect;
            QVERIFY2((bBanner ? QRect(QPoint(), screen) : oContents).contains(oRect), "outside: " + oWhat);
            const QSize oNeeded = oWidget.rect("minimum").size();
            QVERIFY2(oNeeded.boundedTo(oRect.size()) == oNeeded, "cut: " + oWhat);
            QVERIFY2(bBanner || oWidget.name() == "mainText" || oWidget["plain"].toBool(),
                     "markup: " + oWhat);
        }

        const QImage oScreen = picture(oDisplay);
        for (const char* szPicture : {"toolButton", "logo"}) {
            const QRect oRect = oPanel.widget(szPicture).rect();
            QVERIFY2(inkIn(oScreen, oRect).width() > 25, szPicture);
        }
    }

    void captionsEndWhereValuesBegin()
    {
        const Display oDisplay({800, 480});
        PanelProcess oPanel(oDisplay.name(), "exec " PANEL_PROGRAM " -reverse");
        QVERIFY(oPanel.start());
        oPanel.send("dמכשיר\nvabc\n");
        QCOMPARE(oPanel.waitForText("targetVersionForm_Label", "abc"), QString("abc"));
        QTRY_VERIFY(!inkIn(picture(oDisplay), oPanel.widget("targetVersionForm_Label").rect()).isNull());
        const QImage oScreen = picture(oDisplay);
        for (const QString strRow : {"deviceType", "targetVersion"}) {
            const QRect oCaption = inkIn(oScreen, oPanel.widget(strRow + "_Label").rect());
            const QRect oValue = inkIn(oScreen, oPanel.widget(strRow + "Form_Label").rect());
            const int nGap = oValue.left() - oCaption.right();
            QVERIFY2(nGap > 0 && nGap < 20, qPrintable(strRow + QString::number(nGap)));
        }
    }

    void windowManagerCannotCloseIt()
    {
        const Display oDisplay({800, 480});
        ChildProcess oManager;
        const QString strManager =
            "DISPLAY=%1 openbox --sm-disable --startup 'echo ready' | grep --line-buffered ready";
        QCOMPARE(oManager.startAndReadLine("sh", {"-c", strManager.arg(oDisplay.name())}), QString("ready"));
        PanelProcess oPanel(oDisplay.name());
        QVERIFY(oPanel.start());
        QTRY_COMPARE(oPanel.widget("MorvaWidget").rect(), QRect(0, 0, 800, 480));
        QCOMPARE(oPanel.widget("MorvaWidget")["flags"].toInt(),
                 static_cast<int>(Qt::FramelessWindowHint | Qt::Window));
        QVERIFY(oDisplay.pointer("sleep 0.5 key alt+F4 sleep 0.5"));
        QVERIFY(oPanel.widget("MorvaWidget")["visible"].toBool());
        QCOMPARE(oPanel.quit(), 0);
        QCOMPARE(oPanel.output(), QByteArray("First message\n> Good bye!\n"));
    }
};

QTEST_GUILESS_MAIN(TestWindow)
#include "tst_window.moc"
