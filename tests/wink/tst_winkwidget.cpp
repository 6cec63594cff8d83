#include "support/childprocess.h"
#include "support/panelprocess.h"
#include "wink/winkwidget.h"

#include <QApplication>
#include <QDialog>
#include <QLineEdit>
#include <QScreen>
#include <QTest>
#include <ctime>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

std::unique_ptr<Display> s_pDisplay; // none on VNC, where the events come from the test
long s_nSkippedSeconds = 0;

void wink(int nType)
{
    QCoreApplication::postEvent(EventGrabber::getInstance(), new QEvent(static_cast<QEvent::Type>(nType)));
    QTest::qWait(50);
}

QWidget* overlay()
{
    const QWidgetList oWidgets = QApplication::topLevelWidgets();
    const auto it =
        std::find_if(oWidgets.begin(), oWidgets.end(), [](auto p) { return p->inherits("WinkHorWidget"); });
    return it == oWidgets.end() ? nullptr : *it;
}

bool isSeenWhole()
{
    const QRect oRect = overlay()->geometry();
    const QPixmap oSeen =
        QGuiApplication::primaryScreen()->grabWindow(0, oRect.x(), oRect.y(), oRect.width(), oRect.height());
    return oSeen.toImage().convertToFormat(QImage::Format_RGB32) ==
           overlay()->grab().toImage().convertToFormat(QImage::Format_RGB32);
}

void tapOverlay()
{
    if (s_pDisplay) {
        QVERIFY(s_pDisplay->tap(overlay()->geometry().center()));
    } else {
        QTest::mouseClick(overlay()->windowHandle(), Qt::LeftButton);
    }
}

void type(char nLetter)
{
    QTest::qWait(100); // whoever takes the keyboard has it by now
    if (s_pDisplay) {
        QVERIFY(s_pDisplay->pointer(QString("key ") + nLetter));
    } else {
        QTest::keyClick(QGuiApplication::focusWindow(), nLetter);
    }
}

} // namespace

// Timers ask for the time here, so a minute can be skipped.
extern "C" int clock_gettime(clockid_t nClock, timespec* pTime) noexcept
{
    const long nResult = syscall(SYS_clock_gettime, nClock, pTime);
    pTime->tv_sec += s_nSkippedSeconds;
    return static_cast<int>(nResult);
}

/** The overlay among other windows, and its time limit. */
class TestWinkWidget : public QObject
{
    Q_OBJECT

private slots:
    void vanishesAMinuteAfterTheLastWink()
    {
        wink(1001);
        QVERIFY(!overlay());
        wink(1000);
        QVERIFY(overlay() && overlay()->isVisible());
        for (int i = 0; i < 2; ++i) {
            s_nSkippedSeconds += 58;
            QTest::qWait(100);
            QVERIFY(overlay()->isVisible());
            wink(1000);
        }
        wink(1001);
        QVERIFY(!overlay()->isVisible());
        wink(1000);
        QVERIFY(overlay()->isVisible());
        s_nSkippedSeconds += 61;
        QTRY_VERIFY(!overlay()->isVisible());
    }

    void staysAboveDialogAndLeavesItTheKeyboard_data()
    {
        QTest::addColumn<bool>("dialogFirst");
        QTest::newRow("overlay, dialog") << false;
        QTest::newRow("dialog, overlay") << true;
    }

    void staysAboveDialogAndLeavesItTheKeyboard()
    {
        QFETCH(bool, dialogFirst);
        QWidget oPanel;
        oPanel.setWindowFlags(Qt::FramelessWindowHint);
        oPanel.setGeometry(QGuiApplication::primaryScreen()->geometry());
        oPanel.showFullScreen();
        QDialog oDialog(&oPanel);
        oDialog.setModal(true);
        oDialog.setGeometry(100, 100, 500, 300);
        QLineEdit oEdit(&oDialog);
        if (!dialogFirst) {
            wink(1000);
            QTRY_VERIFY(isSeenWhole()); // above the panel
        }
        oDialog.show();
        QTRY_VERIFY(oEdit.hasFocus());
        if (dialogFirst) {
            wink(1000);
        }
        QTRY_VERIFY(isSeenWhole());
        type('a');
        tapOverlay();
        type('b');
        QTRY_COMPARE(oEdit.text(), QString("ab"));
        QTRY_VERIFY(isSeenWhole());
        wink(1001);
    }
};

int main(int argc, char* argv[])
{
    const QByteArray oPlatform = PLATFORM;
    ChildProcess oManager;
    qputenv("QT_QPA_PLATFORM", "vnc:size=800x480");
    if (oPlatform != "vnc") {
        s_pDisplay = std::make_unique<Display>(QSize(800, 480));
        qputenv("DISPLAY", s_pDisplay->name().toLatin1());
        qputenv("QT_QPA_PLATFORM", "xcb");
    }
    if (oPlatform == "openbox") {
        oManager.startAndReadLine("openbox", {"--sm-disable", "--startup", "echo ready"});
    }
    QApplication oApplication(argc, argv);
    TestWinkWidget oTest;
    const int nResult = QTest::qExec(&oTest, argc, argv);
    s_pDisplay.reset();
    return nResult;
}

#include "tst_winkwidget.moc"
