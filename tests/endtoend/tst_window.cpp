#include "support/panelprocess.h"

#include <QTest>

namespace {

bool isText(const sWidget& oWidget)
{
    return oWidget.m_bVisible && oWidget.m_strClass == "QLabel";
}

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
    void fitsScreen_data();
    void fitsScreen();
    void fillsScreenUnderWindowManager();
    void scrollsByTouch();
    void looks();
};

void TestWindow::fitsScreen_data()
{
    QTest::addColumn<QSize>("screen");
    QTest::addColumn<int>("infoFont");
    QTest::addColumn<int>("mainFont");
    QTest::addColumn<int>("settingFont");
    QTest::addColumn<int>("scrollWidth");
    QTest::addColumn<int>("pitch");
    QTest::newRow("272x480") << QSize(272, 480) << 16 << 18 << 12 << 20 << 48;
    QTest::newRow("273x480") << QSize(273, 480) << 16 << 24 << 25 << 24 << 48;
    QTest::newRow("480x272") << QSize(480, 272) << 16 << 24 << 25 << 24 << 48;
    QTest::newRow("480x320") << QSize(480, 320) << 16 << 24 << 25 << 24 << 48;
    QTest::newRow("481x320") << QSize(481, 320) << 20 << 30 << 25 << 32 << 62;
    QTest::newRow("800x480") << QSize(800, 480) << 20 << 30 << 25 << 32 << 62;
    QTest::newRow("1024x600") << QSize(1024, 600) << 20 << 30 << 25 << 32 << 62;
    QTest::newRow("1280x800") << QSize(1280, 800) << 20 << 30 << 25 << 32 << 62;
}

void TestWindow::fitsScreen()
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
    oPanel.send(s_oManyApplications +
                "s019\xC3\xA4nd\n"); // its row does not exist: the log tells that all is done
    QVERIFY(oPanel.waitForLog("idx: 19  size:  19"));

    const sWidget oWindow = oPanel.widget("MorvaWidget");
    QCOMPARE(oWindow.m_oRect, QRect(QPoint(), screen));
    QCOMPARE(oWindow.m_nWindowFlags, static_cast<int>(Qt::FramelessWindowHint | Qt::Window));
    QCOMPARE(oPanel.widget("banner").m_oRect, QRect(0, 0, screen.width(), 70));

    const QList<sWidget> oWidgets = oPanel.widgets();
    QList<sWidget> oTexts;
    std::copy_if(oWidgets.begin(), oWidgets.end(), std::back_inserter(oTexts), isText);
    QVERIFY(oTexts.size() > 80);
    const QRect oContents = oPanel.widget("scrollAreaWidgetContents").m_oRect;
    for (const sWidget& oText : qAsConst(oTexts)) {
        // Nothing is cut...
        const QByteArray oWhat = (oText.m_strName + " " + oText.m_strText).toUtf8();
        const bool bBanner = oText.m_strParent == "banner";
        QVERIFY2((bBanner ? oWindow.m_oRect : oContents).contains(oText.m_oRect), oWhat);
        QVERIFY2(oText.m_oMinimum.height() <= oText.m_oRect.height(), oWhat);
        QVERIFY2(oText.m_bWraps || oText.m_oMinimum.width() <= oText.m_oRect.width(), oWhat);
        // ... and nothing overlaps.
        for (const sWidget& oOther : qAsConst(oTexts)) {
            QVERIFY2(&oOther == &oText || bBanner != (oOther.m_strParent == "banner") ||
                         !oOther.m_oRect.intersects(oText.m_oRect),
                     oWhat + " / " + oOther.m_strText.toUtf8());
        }
    }
    QVERIFY(!oPanel.widget("toolButton").m_oRect.intersects(oPanel.widget("systemSettingsLabel").m_oRect));

    const auto fnPixels = [&](const char* szName) {
        return oPanel.widget(szName).m_strFont.section(',', 2, 2).toInt();
    };
    QCOMPARE(fnPixels("plcStatus_Label"), infoFont);
    QCOMPARE(fnPixels("plcStatusForm_Label"), infoFont);
    QCOMPARE(fnPixels("mainText"), mainFont);
    QCOMPARE(fnPixels("systemSettingsLabel"), settingFont);
    const QRect oCaption = oPanel.widget("appname_Label").m_oRect;
    QCOMPARE(oCaption.y() - oPanel.widget("plcStatus_Label").m_oRect.y(), pitch);
    QCOMPARE(oPanel.widget("appnameForm_Label").m_oRect.y(), oCaption.y());
    QCOMPARE(oWindow.m_oRect.right() - oPanel.widget("qt_scrollarea_viewport").m_oRect.right(), scrollWidth);
}

void TestWindow::fillsScreenUnderWindowManager()
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
    QTRY_COMPARE(oPanel.widget("MorvaWidget").m_oRect, QRect(0, 0, 800, 480));
    QCOMPARE(oPanel.quit(), 0);
    oManager.terminate();
    oManager.waitForFinished();
}

void TestWindow::scrollsByTouch()
{
    const Display oDisplay({480, 272});
    PanelProcess oPanel(oDisplay.name());
    QVERIFY(oPanel.start());
    oPanel.send("n20\ndready\n");
    QCOMPARE(oPanel.waitForText("deviceTypeForm_Label", "ready"), QString("ready"));
    const int nTop = oPanel.widget("scrollAreaWidgetContents").m_oRect.y();

    QStringList oDrag{"mousemove", "200", "250", "mousedown", "1"};
    for (int nY = 245; nY > 120; nY -= 10) {
        oDrag << "mousemove"
              << "200" << QString::number(nY) << "sleep"
              << "0.02";
    }
    QVERIFY(oDisplay.pointer(oDrag << "sleep"
                                   << "0.3"
                                   << "mouseup"
                                   << "1"));
    QTRY_VERIFY(oPanel.widget("scrollAreaWidgetContents").m_oRect.y() < nTop - 60);
}

void TestWindow::looks()
{
    PanelProcess oPanel;
    QVERIFY(oPanel.start());
    const sWidget oCaption = oPanel.widget("plcStatus_Label");
    QCOMPARE(oCaption.m_strFont.section(',', 0, 0), QString("Arial"));
    QCOMPARE(oCaption.m_strFont.section(',', 4, 4), QString("75"));
    QCOMPARE(oCaption.m_nAlignment, static_cast<int>(Qt::AlignRight | Qt::AlignVCenter));
    QCOMPARE(oCaption.m_strColor, QString("#000000"));
    const sWidget oValue = oPanel.widget("plcStatusForm_Label");
    QCOMPARE(oValue.m_nAlignment, static_cast<int>(Qt::AlignLeft | Qt::AlignVCenter));
    QCOMPARE(oValue.m_strFont, oCaption.m_strFont);
}

QTEST_GUILESS_MAIN(TestWindow)
#include "tst_window.moc"
