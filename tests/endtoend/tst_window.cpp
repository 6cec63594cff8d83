#include "support/panelprocess.h"

#include <QFileInfo>
#include <QImage>
#include <QTest>

namespace {

const QByteArray s_oManyApplications = [] {
    QByteArray oLines = "dCompact controller 500/600, long name of a device type\nv3.5.19.10 (r12345)\nn20\n";
    for (int i = 0; i < 20; ++i) {
        const QByteArray oIndex = QByteArray::number(i).rightJustified(3, '0');
        oLines += "a" + oIndex +
                  "F\xC3\xB6rderband \xD0\xAE\xE0\xB8\x97\xE6\xB3\xB5 \xE1\xBA\xBE and a name that goes on "
                  "and on\ns" +
                  oIndex + "L\xC3\xA4uft\n";
    }
    return oLines;
}();

} // namespace

class TestWindow : public QObject
{
    Q_OBJECT

private slots:
    void fitsScreen_data()
    {
        QTest::addColumn<QSize>("screen");
        QTest::addColumn<int>("infoFont");
        QTest::addColumn<int>("mainFont");
        QTest::addColumn<int>("settingFont");
        QTest::addColumn<int>("scrollWidth");
        QTest::addColumn<int>("pitch");
        for (const QSize oSize : {QSize(272, 480), QSize(273, 480), QSize(480, 272), QSize(480, 320),
                                  QSize(481, 320), QSize(800, 480), QSize(1024, 600), QSize(1280, 800)}) {
            const bool bLarge = oSize.width() > 480;
            const bool bSmall = oSize.width() <= 272;
            QTest::addRow("%dx%d", oSize.width(), oSize.height()) << oSize << (bLarge ? 20 : 16)
                                                                  << (bLarge   ? 30
                                                                      : bSmall ? 18
                                                                               : 24)
                                                                  << (bSmall ? 12 : 25)
                                                                  << (bLarge   ? 32
                                                                      : bSmall ? 20
                                                                               : 24)
                                                                  << (bLarge ? 62 : 48);
        }
    }

    void fitsScreen()
    {
        QFETCH(QSize, screen);
        QFETCH(int, infoFont);
        QFETCH(int, mainFont);
        QFETCH(int, settingFont);
        QFETCH(int, scrollWidth);
        QFETCH(int, pitch);
        const Display oDisplay(screen);
        PanelProcess oPanel(oDisplay.name());
        QVERIFY(oPanel.start());
        oPanel.send("v255.255.255.255\n"); // an address fits beside the captions
        QCOMPARE(oPanel.waitForText("targetVersionForm_Label", "255.255.255.255"),
                 QString("255.255.255.255"));
        QTRY_VERIFY(oPanel.widget("scrollAreaWidgetContents").rect().width() <=
                    oPanel.widget("qt_scrollarea_viewport").rect().width());
        oPanel.send(s_oManyApplications +
                    "s019\xC3\xA4nd\n"); // its row does not exist: the log tells that all is done
        QVERIFY(oPanel.waitForLog("idx: 19  size:  19"));

        const sWidget oWindow = oPanel.widget("MorvaWidget");
        QCOMPARE(oWindow.rect(), QRect(QPoint(), screen));
        QCOMPARE(oWindow["flags"].toInt(), static_cast<int>(Qt::FramelessWindowHint | Qt::Window));
        QCOMPARE(oPanel.widget("banner").rect(), QRect(0, 0, screen.width(), 70));

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
        }
        QVERIFY(!oPanel.widget("toolButton").rect().intersects(oPanel.widget("systemSettingsLabel").rect()));

        const auto fnPixels = [&](const char* szName) {
            return oPanel.widget(szName)["font"].toString().section(',', 2, 2).toInt();
        };
        QCOMPARE(fnPixels("plcStatus_Label"), infoFont);
        QCOMPARE(fnPixels("plcStatusForm_Label"), infoFont);
        QCOMPARE(fnPixels("mainText"), mainFont);
        QCOMPARE(fnPixels("systemSettingsLabel"), settingFont);
        const QRect oCaption = oPanel.widget("appname_Label").rect();
        QCOMPARE(oCaption.y() - oPanel.widget("plcStatus_Label").rect().y(), pitch);
        QCOMPARE(oPanel.widget("appnameForm_Label").rect().y(), oCaption.y());
        QCOMPARE(oWindow.rect().right() - oPanel.widget("qt_scrollarea_viewport").rect().right(),
                 scrollWidth);
    }

    void fillsScreenUnderWindowManager()
    {
        const Display oDisplay({800, 480});
        QProcess oManager;
        QProcessEnvironment oEnvironment = QProcessEnvironment::systemEnvironment();
        oEnvironment.insert("DISPLAY", oDisplay.name());
        oManager.setProcessEnvironment(oEnvironment);
        oManager.start("openbox", {"--sm-disable", "--startup", "echo ready"});
        QVERIFY(oManager.waitForReadyRead());

        PanelProcess oPanel(oDisplay.name());
        QVERIFY(oPanel.start());
        QTRY_COMPARE(oPanel.widget("MorvaWidget").rect(), QRect(0, 0, 800, 480));
        QCOMPARE(oPanel.quit(), 0);
        oManager.terminate();
        oManager.waitForFinished();
    }

    void scrollsByTouch()
    {
        const Display oDisplay({480, 272});
        PanelProcess oPanel(oDisplay.name());
        QVERIFY(oPanel.start());
        oPanel.send("n20\ndready\n");
        QCOMPARE(oPanel.waitForText("deviceTypeForm_Label", "ready"), QString("ready"));
        const int nTop = oPanel.widget("scrollAreaWidgetContents").rect().y();

        QString strDrag = "mousemove 200 250 mousedown 1";
        for (int nY = 245; nY > 120; nY -= 10) {
            strDrag += QString(" mousemove 200 %1 sleep 0.02").arg(nY);
        }
        QVERIFY(oDisplay.pointer(strDrag + " sleep 0.3 mouseup 1"));
        QTRY_VERIFY(oPanel.widget("scrollAreaWidgetContents").rect().y() < nTop - 60);
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

    void looks()
    {
        const Display oDisplay({800, 480});
        PanelProcess oPanel(oDisplay.name());
        QVERIFY(oPanel.start());
        const sWidget oCaption = oPanel.widget("plcStatus_Label");
        const sWidget oValue = oPanel.widget("plcStatusForm_Label");
        QVERIFY2(oCaption["font"].toString().startsWith("Arial,-1,20,5,75,"),
                 qPrintable(oCaption["font"].toString()));
        QCOMPARE(oValue["font"], oCaption["font"]);
        QCOMPARE(oCaption["alignment"].toInt(), static_cast<int>(Qt::AlignRight | Qt::AlignVCenter));
        QCOMPARE(oValue["alignment"].toInt(), static_cast<int>(Qt::AlignLeft | Qt::AlignVCenter));
        QCOMPARE(oCaption["color"].toString(), QString("#000000"));
        oPanel.send("n2\n");
        const QList<sWidget> oWidgets = oPanel.widgets();
        for (const sWidget& oWidget : oWidgets) { // what the runtime sends is never markup
            QVERIFY(!oWidget.name().endsWith("Form_Label") || oWidget["plain"].toBool());
        }

        QTRY_VERIFY(QFileInfo::exists("/tmp/tarnixUI")); // painted
        QCOMPARE(
            QProcess::execute("import", {"-display", oDisplay.name(), "-window", "root", "/tmp/screen.png"}),
            0);
        const QImage oScreen("/tmp/screen.png");
        const auto fnHasDark = [&](const QRect& oRect) {
            const QImage oPart = oScreen.copy(oRect).convertToFormat(QImage::Format_Grayscale8);
            return std::any_of(oPart.constBits(), oPart.constBits() + oPart.sizeInBytes(),
                               [](uchar n) { return n < 140; });
        };
        QVERIFY(fnHasDark(oPanel.widget("toolButton").rect()));
        QVERIFY(fnHasDark(oPanel.widget("logo").rect()));
        QCOMPARE(oScreen.pixelColor(2, 2), QColor(Qt::white));
        QCOMPARE(oScreen.pixelColor(2, 470), QColor(Qt::white));
    }
};

QTEST_GUILESS_MAIN(TestWindow)
#include "tst_window.moc"
