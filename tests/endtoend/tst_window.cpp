#include "support/panelprocess.h"

#include <QFile>
#include <QImage>
#include <QTest>

namespace {

const QByteArray s_oManyApplications = [] {
    QByteArray oLines = "dCompact controller 500/600, long name of a device type\nv3.5.19.10 (r12345)\nn20\n";
    for (int i = 100; i < 120; ++i) {
        oLines +=
            "a" + QByteArray::number(i).replace(0, 1, "0") + "Förderband Юท泵 Ế and a name that goes on\n";
        oLines += "s" + QByteArray::number(i).replace(0, 1, "0") + "Läuft\n";
    }
    return oLines; // there is no row for the last: the log tells that all is done
}();

} // namespace

class TestWindow : public QObject
{
    Q_OBJECT

private slots:
    void fitsScreen_data()
    {
        QTest::addColumn<QSize>("screen");
        for (const QSize oSize : {QSize(272, 480), QSize(273, 480), QSize(480, 272), QSize(480, 320),
                                  QSize(481, 320), QSize(800, 480), QSize(1024, 600), QSize(1280, 800)}) {
            QTest::addRow("%dx%d", oSize.width(), oSize.height()) << oSize;
        }
    }

    void fitsScreen()
    {
        QFETCH(QSize, screen);
        const bool bLarge = screen.width() > 480;
        const bool bSmall = screen.width() <= 272;
        const Display oDisplay(screen);
        ChildProcess oManager;
        if (screen.width() == 1280) { // the panel fills the screen under a window manager too
            const QString strManager =
                "DISPLAY=%1 openbox --sm-disable --startup 'echo ready' | grep --line-buffered ready";
            QCOMPARE(oManager.startAndReadLine("sh", {"-c", strManager.arg(oDisplay.name())}),
                     QString("ready"));
        }
        PanelProcess oPanel(oDisplay.name());
        QVERIFY(oPanel.start());
        QTRY_COMPARE(oPanel.widget("MorvaWidget").rect(), QRect(QPoint(), screen));
        oPanel.send("n9\nv255.255.255.255\n"); // an address fits beside the captions and the scroll bar
        QCOMPARE(oPanel.waitForText("targetVersionForm_Label", "255.255.255.255"),
                 QString("255.255.255.255"));
        QTRY_VERIFY(oPanel.widget("scrollAreaWidgetContents").rect().width() <=
                    oPanel.widget("qt_scrollarea_viewport").rect().width());
        oPanel.send(s_oManyApplications);
        QVERIFY(oPanel.waitForLog("idx: 19  size:  19"));

        const sWidget oWindow = oPanel.widget("MorvaWidget");
        QCOMPARE(oWindow["flags"].toInt(), static_cast<int>(Qt::FramelessWindowHint | Qt::Window));
        QCOMPARE(oPanel.widget("banner").rect(), QRect(0, 0, screen.width(), 70));
        QVERIFY(oWindow.rect().contains(oPanel.widget("mainText").rect()));

        const QList<sWidget> oWidgets = oPanel.widgets();
        QList<sWidget> oTexts;
        std::copy_if(oWidgets.begin(), oWidgets.end(), std::back_inserter(oTexts),
                     [](const sWidget& oWidget) { return oWidget.isVisibleLabel(); });
        QVERIFY(oTexts.size() > 80);
        const QRect oContents = oPanel.widget("scrollAreaWidgetContents").rect();
        for (const sWidget& oText : qAsConst(oTexts)) {
            // Nothing is cut...
            const QByteArray oWhat = (oText.name() + " " + oText.text()).toUtf8();
            const bool bBanner = oText["parent"] == "banner";
            QVERIFY2((bBanner ? oWindow.rect() : oContents).contains(oText.rect()), oWhat);
            QVERIFY2(oText.rect("minimum").height() <= oText.rect().height(), oWhat);
            QVERIFY2(oText["wraps"].toBool() || oText.rect("minimum").width() <= oText.rect().width(), oWhat);
            // ... and nothing overlaps.
            for (const sWidget& oOther : qAsConst(oTexts)) {
                QVERIFY2(&oOther == &oText || bBanner != (oOther["parent"] == "banner") ||
                             !oOther.rect().intersects(oText.rect()),
                         oWhat + " / " + oOther.text().toUtf8());
            }
            // What the runtime sends is never markup.
            QVERIFY2(oText["plain"].toBool() || bBanner || oText.name() == "mainText", oWhat);
        }
        QVERIFY(!oPanel.widget("toolButton").rect().intersects(oPanel.widget("systemSettingsLabel").rect()));

        const sWidget oCaption = oPanel.widget("appname_Label");
        const sWidget oValue = oPanel.widget("appnameForm_Label");
        const auto fnPixels = [&](const char* szName) {
            return oPanel.widget(szName)["font"].toString().section(',', 2, 2).toInt();
        };
        QCOMPARE(oCaption["font"].toString().left(17), bLarge ? "Arial,-1,20,5,75," : "Arial,-1,16,5,75,");
        QCOMPARE(oValue["font"], oCaption["font"]);
        QCOMPARE(fnPixels("mainText"), bLarge ? 30 : bSmall ? 18 : 24);
        QCOMPARE(fnPixels("systemSettingsLabel"), bSmall ? 12 : 25);
        QCOMPARE(oCaption["alignment"].toInt(), static_cast<int>(Qt::AlignRight | Qt::AlignVCenter));
        QCOMPARE(oValue["alignment"].toInt(), static_cast<int>(Qt::AlignLeft | Qt::AlignVCenter));
        QCOMPARE(oCaption["color"].toString(), QString("#000000"));
        QCOMPARE(oCaption.rect().y() - oPanel.widget("plcStatus_Label").rect().y(), bLarge ? 62 : 48);
        QCOMPARE(oValue.rect().y(), oCaption.rect().y());
        QCOMPARE(oWindow.rect().right() - oPanel.widget("qt_scrollarea_viewport").rect().right(), bLarge ? 32
                                                                                                  : bSmall
                                                                                                      ? 20
                                                                                                      : 24);

        // It looks as it should...
        QTRY_VERIFY(QFile::exists("/tmp/tarnixUI")); // painted
        const QString strPicture = "/tmp/screen.png";
        QCOMPARE(QProcess::execute("import", {"-display", oDisplay.name(), "-window", "root", strPicture}),
                 0);
        const QImage oScreen = QImage(strPicture).convertToFormat(QImage::Format_Grayscale8);
        for (const char* szPicture : {"toolButton", "logo"}) {
            const QImage oPart = oScreen.copy(oPanel.widget(szPicture).rect());
            const uchar* pEnd = oPart.constBits() + oPart.sizeInBytes();
            const auto nDark = std::count_if(oPart.constBits(), pEnd, [](uchar n) { return n < 140; });
            QVERIFY2(nDark > oPart.sizeInBytes() / 20, szPicture);
        }
        QCOMPARE(oScreen.pixelColor(2, 2), QColor(Qt::white));
        QCOMPARE(oScreen.pixelColor(2, 80), QColor(Qt::white));

        // ... and a finger drags it.
        QString strDrag = QString("mousemove 100 %1 mousedown 1").arg(screen.height() - 50);
        for (int i = 0; i < 12; ++i) {
            strDrag += " mousemove_relative -- 0 -10 sleep 0.02";
        }
        QVERIFY(oDisplay.pointer(strDrag + " sleep 0.3 mouseup 1"));
        QTRY_VERIFY(oPanel.widget("scrollAreaWidgetContents").rect().y() < oContents.y() - 60);
    }

    void idlePaintsOnlyTheClock()
    {
        PanelProcess oPanel;
        QVERIFY(oPanel.start());
        QTRY_VERIFY(oPanel.widget("systemTimeForm_Label").text() != "SystemTime");
        oPanel.widgets();
        QTest::qWait(2500);
        const QList<sWidget> oWidgets = oPanel.widgets();
        QRect oClock;
        QRect oPainted;
        for (const sWidget& oWidget : oWidgets) {
            oPainted |= oWidget.rect("painted");
            if (oWidget.name() == "systemTimeForm_Label" || oWidget.name() == "systemDateForm_Label") {
                oClock |= oWidget.rect();
            }
        }
        QVERIFY(!oPainted.isEmpty());
        QVERIFY(oClock.contains(oPainted));
    }
};

QTEST_GUILESS_MAIN(TestWindow)
#include "tst_window.moc"
