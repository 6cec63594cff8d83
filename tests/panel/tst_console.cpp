#include "panel/console.h"
#include "panel/tarnixUIwidget.h"
#include "platform/ovikplatform.h"
#include "wink/winkwidget.h"

#include <QApplication>
#include <QTest>
#include <unistd.h>

/** What the command channel hands to others than the panel's labels; the test holds the runtime's end of its
 * input. */
class TestConsole : public QObject
{
    Q_OBJECT

public:
    bool eventFilter(QObject* pWatched, QEvent* pEvent) override
    {
        if (pWatched == EventGrabber::getInstance() && pEvent->type() >= QEvent::User) {
            m_oEvents.append(pEvent->type());
        }
        return false;
    }

private slots:
    void initTestCase()
    {
        int oPipe[2];
        QCOMPARE(pipe(oPipe), 0);
        QCOMPARE(dup2(oPipe[0], STDIN_FILENO), STDIN_FILENO);
        m_nRuntime = oPipe[1];
        EventGrabber::getInstance()->installEventFilter(this);
    }

    void winkIsPosted()
    {
        TarnixUI oPanel;
        send("w1abc\nw2\nw\nW1\nw0\nw1\n");
        QTRY_COMPARE(m_oEvents, (QList<int>{1000, 1001, 1000}));
    }

    void deviceNameIsKept()
    {
        TarnixUI oPanel;
        send("d500/600\n");
        QTRY_COMPARE(OVIKPlatform::getInstance()->GetDeviceNameAsString(), QString("500/600"));
        send("d\n");
        QTRY_COMPARE(OVIKPlatform::getInstance()->GetDeviceNameAsString(), QString());
    }

    void endQuitsTheApplicationOnce()
    {
        TarnixUI oPanel;
        int nQuits = 0;
        connect(oPanel.findChild<Console*>(), &Console::quit, [&] { ++nQuits; });
        close(m_nRuntime);
        QCOMPARE(QApplication::exec(), 0);
        QTest::qWait(50);
        QCOMPARE(nQuits, 1);
    }

private:
    void send(const QByteArray& oLines)
    {
        QCOMPARE(write(m_nRuntime, oLines, size_t(oLines.size())), oLines.size());
    }

    int m_nRuntime = -1;
    QList<int> m_oEvents;
};

QTEST_MAIN(TestConsole)
#include "tst_console.moc"
