#include "support/panelprocess.h"
#include "support/privatebus.h"
#include "support/simulatorprocess.h"

#include <QImage>
#include <QPainter>
#include <QTest>
#include <csignal>

namespace {

constexpr QSize s_oScreen(1024, 768);
constexpr QRect s_oPointerRest(1000, 740, 24, 28);

// Some compositors draw the mouse pointer.
QImage withoutPointer(QImage oScreen)
{
    QPainter(&oScreen).fillRect(s_oPointerRest, Qt::black);
    return oScreen;
}

} // namespace

/** The real panel on the displays of devices: compares the screen with what the panel's windows paint. */
class TestDisplay : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QCOMPARE(QProcess::execute("ip", {"link", "add", "eth0", "type", "veth", "peer", "name", "eth1"}), 0);
        QVERIFY(m_oBus.start() && m_oService.start(m_oBus));
        qputenv("DBUS_SYSTEM_BUS_ADDRESS", m_oBus.address().toUtf8());
        QCOMPARE(QProcess::execute(DEVICE_TOOLS, {}), 0);
    }

    void init()
    {
        m_pDisplay = std::make_unique<VirtualDisplay>(s_oScreen);
        qputenv("DISPLAY", m_pDisplay->name().toUtf8());
    }

    void showsOverlayAboveDialogAbovePanel_data()
    {
        QTest::addColumn<QString>("platform");
        QTest::newRow("x11") << "xcb";
        QTest::newRow("openbox") << "xcb";
        QTest::newRow("matchbox") << "xcb";
        QTest::newRow("weston-desktop") << "wayland";
        QTest::newRow("weston-kiosk") << "wayland";
        QTest::newRow("cage") << "wayland";
        QTest::newRow("vnc") << "vnc:size=1024x768"; // has the windows of linuxfb
    }

    void showsOverlayAboveDialogAbovePanel()
    {
        QFETCH(QString, platform);
        qputenv("PLATFORM", platform.toUtf8());
        PanelProcess oPanel(m_pDisplay->name(), "export QT_QPA_PLATFORM=$PLATFORM WAYLAND_DISPLAY=wayland-0\n"
                                                "exec " PANEL_PROGRAM);
        m_pPanel = &oPanel;
        ChildProcess oSession;
        const bool bViewer = platform.startsWith("vnc"); // connects to the panel
        QVERIFY(bViewer || startSession(oSession, QTest::currentDataTag()));
        QVERIFY(oPanel.start());
        QVERIFY(!bViewer || startSession(oSession, QTest::currentDataTag()));
        QVERIFY(isSeen("MorvaWidget"));
        checkLook();
        QVERIFY(!QTest::currentTestFailed());

        oPanel.send("w1\n");
        QVERIFY(isSeen("winkHorWidget"));
        const QRect oOverlay = oPanel.widget("winkHorWidget").rect();
        QCOMPARE(oOverlay.center(), QRect(QPoint(), s_oScreen).center());

        // Fingers and keys reach what is below the overlay.
        const QPoint oRow(oOverlay.center().x(), centre("192.168.1.20").y());
        QVERIFY(oOverlay.contains(oRow) && m_pDisplay->tap(oRow));
        QVERIFY(isAboveButBelowOverlay("NetworkSettingsDialog"));
        oPanel.send("w1\n");
        QVERIFY(isSeen("winkHorWidget"));
        tap("ipAddress_LineEdit");
        QVERIFY(oOverlay.contains(centre("ipAddress_LineEdit")));
        QVERIFY(m_pDisplay->pointer("key ctrl+a type 10.0.0.77"));
        QCOMPARE(oPanel.waitForText("ipAddress_LineEdit", "10.0.0.77"), QString("10.0.0.77"));
        tap("closeButton");
        QVERIFY(oPanel.waitForVisible("NetworkSettingsDialog", false));
        QVERIFY(isSeen("winkHorWidget"));

        tap("systemTimeForm_Label");
        QVERIFY(isAboveButBelowOverlay("DateTimeDialog"));
        QVERIFY(isSeen("banner")); // beside the dialog
        checkTyping();
        checkPopup("timezone_ComboBox");
        checkPopup("currentDate_DateEdit");
        tap("closeButton");
        QVERIFY(!QTest::currentTestFailed() && isSeen("MorvaWidget"));

        tap("systemTimeForm_Label");
        QVERIFY(isSeen("DateTimeDialog") && isOpened("timezone_ComboBox"));
        oPanel.send("w1\n");
        QVERIFY(isSeen("winkHorWidget"));
        QCOMPARE(oPanel.quit(), 0);
    }

    // When the keypad goes, the dialog moves.
    void listStaysBelowItsField()
    {
        if (!QFile::exists(KEYPAD_PATH "/platforminputcontexts")) {
            QSKIP("built without the keypad", ); // the comma is for -Wpedantic of Clang
        }
        ChildProcess oSession;
        QVERIFY(startSession(oSession, "weston-kiosk"));
        PanelProcess oPanel(m_pDisplay->name(),
                            "export QT_QPA_PLATFORM=wayland WAYLAND_DISPLAY=wayland-0 "
                            "QT_IM_MODULE=tarnixui-keypad QT_PLUGIN_PATH=$QT_PLUGIN_PATH:" KEYPAD_PATH
                            "\nexec " PANEL_PROGRAM);
        m_pPanel = &oPanel;
        QVERIFY(oPanel.start() && isSeen("MorvaWidget"));
        tap("systemTimeForm_Label");
        QVERIFY(isSeen("DateTimeDialog"));
        const QRect oField = oPanel.widget("timezone_ComboBox").rect();
        tap("timezone_ComboBox");
        QTRY_VERIFY(oPanel.widget("timezone_ComboBox").rect() != oField); // above the keypad
        QVERIFY(m_pDisplay->pointer("type europe"));
        QVERIFY(oPanel.waitForVisible("choices"));
        QVERIFY(m_pDisplay->tap({1000, 750})); // OK
        QTRY_COMPARE(oPanel.widget("timezone_ComboBox").rect(), oField);
        QTRY_COMPARE(oPanel.widget("choices").rect().topLeft(), oField.bottomLeft() + QPoint(0, 1));
        QVERIFY(isSeen("choices"));
    }

    // In a window of X, where eglfs gets no touches and cannot end.
    void hidesOverlayForGoodOnEglfs()
    {
        PanelProcess oPanel(m_pDisplay->name(),
                            "export QT_QPA_PLATFORM=eglfs QT_QPA_EGLFS_INTEGRATION=eglfs_x11\n"
                            "exec " PANEL_PROGRAM);
        m_pPanel = &oPanel;
        QVERIFY(oPanel.start());
        checkLook();
        oPanel.send("w1\n");
        QVERIFY(isSeen("winkHorWidget"));
        oPanel.send("w0\n");
        QVERIFY(oPanel.waitForTicks()); // the overlay's own timer has run
        oPanel.send("dQX 500/601\n");   // paints the panel again
        QCOMPARE(oPanel.waitForText("deviceTypeForm_Label", "QX 500/601"), QString("QX 500/601"));
        QVERIFY(isSeen("MorvaWidget"));
    }

private:
    static bool startSession(ChildProcess& oSession, const QString& strName)
    {
        return oSession.startAndReadLine(SESSION, {strName}) == "ready";
    }

    // With both scroll bars the panel looks the same on every display.
    void checkLook()
    {
        m_pPanel->send("dQX 500/600\nn20\na018" + QByteArray(99, 'W') + "\nv1.2\n");
        QCOMPARE(m_pPanel->waitForText("targetVersionForm_Label", "1.2"), QString("1.2"));
        QVERIFY(isSeen("MorvaWidget"));
        QImage oPanel = m_pPanel->picture("MorvaWidget").convertToFormat(QImage::Format_RGB32);
        const QRect oArea = m_pPanel->widget("scrollArea").rect();
        QCOMPARE(oPanel.pixelColor(oArea.topLeft() + QPoint(2, 2)), QColor(Qt::white));
        QCOMPARE(oPanel.pixelColor(oArea.bottomLeft() + QPoint(60, -16)), QColor(120, 130, 140));
        QCOMPARE(oPanel.pixelColor(oArea.bottomRight() + QPoint(-60, -16)), QColor(220, 220, 220));
        for (const char* szClock : {"systemDateForm_Label", "systemTimeForm_Label"}) {
            QPainter(&oPanel).fillRect(m_pPanel->widget(szClock).rect(), Qt::black);
        }
        if (m_oPanelOnX.isNull()) {
            m_oPanelOnX = oPanel;
        }
        if (oPanel != m_oPanelOnX) { // leaves both in the build folder, to look at
            QFAIL(oPanel.save("panel.png") && m_oPanelOnX.save("panel-on-x.png") ? "looks otherwise"
                                                                                 : "no disk");
        }
        m_pPanel->send("n1\nv1.3\n");
        QCOMPARE(m_pPanel->waitForText("targetVersionForm_Label", "1.3"), QString("1.3"));
    }

    // The panel gets all keys at once.
    void checkTyping()
    {
        const auto fnSignal = [this](int nSignal) {
            ::kill(pid_t(m_pPanel->process().processId()), nSignal);
        };
        tap("timezone_ComboBox");
        fnSignal(SIGSTOP);
        QVERIFY(m_pDisplay->pointer("key ctrl+a type tokyo"));
        fnSignal(SIGCONT);
        QVERIFY(m_pPanel->waitForVisible("choices") && isSeen("choices"));
        QVERIFY(m_pDisplay->pointer("key ctrl+a BackSpace"));
        QVERIFY(m_pPanel->waitForVisible("choices", false));
    }

    // Below the overlay, closed by a tap beside it or by Escape.
    void checkPopup(const QString& strField)
    {
        QVERIFY(isOpened(strField));
        m_pPanel->send("w1\n");
        QVERIFY(isSeen("winkHorWidget"));
        QVERIFY(m_pDisplay->tap({300, 60}));
        QVERIFY(isSeen("winkHorWidget"));
        m_pPanel->send("w0\n");
        QVERIFY(isSeen("DateTimeDialog"));
        QVERIFY(isOpened(strField));
        QVERIFY(m_pDisplay->pointer("key Escape"));
        QVERIFY(isSeen("DateTimeDialog"));
    }

    // Opens the list or calendar of the field.
    bool isOpened(const QString& strField)
    {
        const QRect oField = m_pPanel->widget(strField).rect();
        m_pDisplay->tap({oField.right() - 20, oField.center().y()});
        return QTest::qWaitFor([&] { return !isPainted("DateTimeDialog"); });
    }

    bool isSeen(const QString& strName)
    {
        const auto fnLook = [&] { // until the compositor has noticed the pointer, too
            m_pDisplay->pointer("mousemove 0 0 mousemove 1023 767 mousemove 1010 750");
            return isPainted(strName);
        };
        const bool bSeen = QTest::qWaitFor(fnLook, 10000);
        if (!bSeen) {
            screen().save(QString("%1.png").arg(QTest::currentDataTag())); // in the build folder, to look at
        }
        return bSeen;
    }

    // The screen does not change when the widget is painted on it once more.
    bool isPainted(const QString& strName)
    {
        const QImage oScreen = withoutPointer(screen());
        QImage oPainted = oScreen;
        const QImage oPicture = m_pPanel->picture(strName);
        QPainter(&oPainted).drawImage(m_pPanel->widget(strName).rect().topLeft(), oPicture);
        return !oPicture.isNull() && withoutPointer(oPainted) == oScreen;
    }

    QImage screen() const
    {
        QProcess oImport;
        oImport.start("import", {"-display", m_pDisplay->name(), "-window", "root", "-depth", "8", "ppm:-"});
        oImport.waitForFinished();
        return QImage::fromData(oImport.readAllStandardOutput(), "PPM").convertToFormat(QImage::Format_RGB32);
    }

    bool isAboveButBelowOverlay(const QString& strDialog)
    {
        if (!m_pPanel->waitForVisible(strDialog) || !isSeen("winkHorWidget")) {
            return false;
        }
        m_pPanel->send("w0\n");
        return isSeen(strDialog);
    }

    // Returns the middle of the widget that has the name or shows the text.
    QPoint centre(const QString& strNameOrText)
    {
        const QList<sWidget> oWidgets = m_pPanel->widgets();
        for (const sWidget& oWidget : oWidgets) {
            const bool bWanted = oWidget.name() == strNameOrText || oWidget.text() == strNameOrText;
            if (bWanted && oWidget["visible"].toBool()) {
                return oWidget.rect().center();
            }
        }
        return {};
    }

    void tap(const QString& strNameOrText) { m_pDisplay->tap(centre(strNameOrText)); }

    std::unique_ptr<VirtualDisplay> m_pDisplay;
    PanelProcess* m_pPanel = nullptr;
    QImage m_oPanelOnX; // the first row's
    PrivateBus m_oBus;
    SimulatorProcess m_oService;
};

QTEST_GUILESS_MAIN(TestDisplay)
#include "tst_display.moc"
