#include "support/childprocess.h"
#include "support/panelprocess.h"
#include "wink/winkwidget.h"

#include <QApplication>
#include <QDialog>
#include <QLineEdit>
#include <QScreen>
#include <QTest>
#include <QWindow>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

time_t s_nSkippedSeconds = 0;

} // namespace

// Timers read the time here, so that a test can skip a minute.
// NOLINTNEXTLINE(readability-inconsistent-declaration-parameter-name)
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
    void hidesAMinuteAfterTheLastWink()
    {
        wink(1001);
        QVERIFY(QApplication::topLevelWidgets().isEmpty());
        wink(1000);
        m_pOverlay = QApplication::topLevelWidgets().value(0);
        QVERIFY(m_pOverlay);
        for (const bool bHand : {false, true}) {
            s_nSkippedSeconds += 58;
            QTRY_COMPARE(m_pOverlay->findChild<QWidget*>("label")->isVisible(), bHand); // timers have run
            QVERIFY(m_pOverlay->isVisible());
            wink(1000);
        }
        s_nSkippedSeconds += 61;
        QTRY_VERIFY(!m_pOverlay->isVisible());
    }

    void staysAboveDialogAndLeavesItTheKeyboard()
    {
        QWidget oPanel;
        oPanel.setWindowFlags(Qt::FramelessWindowHint);
        oPanel.showFullScreen();
        for (const bool bDialogFirst : {false, true}) {
            QDialog oDialog(&oPanel);
            oDialog.setModal(true);
            QLineEdit oEdit(&oDialog);
            if (!bDialogFirst) {
                wink(1000);
                QTRY_VERIFY(isSeenWhole()); // above the panel
            }
            oDialog.show();
            if (bDialogFirst) {
                QTRY_VERIFY(oEdit.hasFocus());
            }
            wink(1000); // or before the display has reported the focus
            QTRY_VERIFY(oEdit.hasFocus());
            QTRY_VERIFY(isSeenWhole());
            if (QGuiApplication::platformName() == "xcb") {
                QProcess::execute("xdotool", {"mousemove", "400", "240", "click", "1", "key", "a"});
            } else { // nothing types on VNC
                QTest::keyClick(QGuiApplication::focusWindow(), 'a');
            }
            QTRY_COMPARE(oEdit.text(), QString("a"));
            QTRY_VERIFY(isSeenWhole());
            oDialog.hide(); // the panel gets the focus
            wink(1001);
            QVERIFY(!m_pOverlay->windowHandle()->isVisible());
        }
    }

    void comesBackAboveAnotherWindowAndCannotBeClosed()
    {
        wink(1000);
        QTRY_VERIFY(isSeenWhole());
        QWidget oOther(nullptr,
                       Qt::ToolTip | Qt::WindowStaysOnTopHint); // takes no keyboard, as if of another program
        oOther.setGeometry(QGuiApplication::primaryScreen()->geometry());
        oOther.show();
        oOther.raise();
        QTRY_VERIFY(!isSeenWhole());
        QTRY_VERIFY(isSeenWhole());
        QVERIFY(!m_pOverlay->close() && m_pOverlay->isVisible());
    }

private:
    static void wink(int nType)
    {
        QCoreApplication::postEvent(EventGrabber::getInstance(),
                                    new QEvent(static_cast<QEvent::Type>(nType)));
        QCoreApplication::sendPostedEvents(EventGrabber::getInstance());
    }

    bool isSeenWhole() const
    {
        const QRect oRect = m_pOverlay->geometry();
        const QImage oScreen = QGuiApplication::primaryScreen()->grabWindow(0).toImage();
        return m_pOverlay->isVisible() &&
               oScreen.copy(oRect).convertToFormat(QImage::Format_RGB32) ==
                   m_pOverlay->grab().toImage().convertToFormat(QImage::Format_RGB32);
    }

    QWidget* m_pOverlay = nullptr;
};

int main(int argc, char* argv[])
{
    const VirtualDisplay oDisplay({800, 480});
    qputenv("DISPLAY", oDisplay.name().toLatin1());
    qputenv("QT_QPA_PLATFORM", PLATFORM);
    ChildProcess oManager;
    oManager.startAndReadLine("sh", {"-c", MANAGER});
    QCoreApplication::setAttribute(Qt::AA_ForceRasterWidgets); // as the panel draws
    QApplication oApplication(argc, argv);
    TestWinkWidget oTest;
    return QTest::qExec(&oTest, argc, argv);
}

#include "tst_winkwidget.moc"
