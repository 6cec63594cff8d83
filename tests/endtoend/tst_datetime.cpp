#include "support/panelprocess.h"
#include "support/privatebus.h"
#include "support/simulatorprocess.h"

#include <QFile>
#include <QTest>

namespace {

QByteArray contents(const QString& strPath)
{
    QFile oFile(strPath);
    return oFile.open(QIODevice::ReadOnly) ? oFile.readAll() : QByteArray();
}

} // namespace

/** The date and time dialog as an operator opens it on the panel. */
class TestDateTime : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QCOMPARE(QProcess::execute(DEVICE_TOOLS, {}), 0);
        QCOMPARE(QProcess::execute("ip", {"link", "add", "eth0", "type", "veth", "peer", "name", "eth1"}), 0);
        QVERIFY(m_oBus.start());
        QVERIFY(m_oService.start(m_oBus));
        qputenv("DBUS_SYSTEM_BUS_ADDRESS", m_oBus.address().toUtf8());
    }

    void setsZone_data()
    {
        QTest::addColumn<QSize>("screen");
        QTest::newRow("272x480") << QSize(272, 480);
        QTest::newRow("480x272") << QSize(480, 272);
        QTest::newRow("800x480") << QSize(800, 480);
    }

    void setsZone()
    {
        QFETCH(QSize, screen);
        const Display oDisplay(screen);
        PanelProcess oPanel(oDisplay.name());
        QVERIFY(oPanel.start());
        QTRY_VERIFY(oDisplay.pointer("mousemove 100 250 click --repeat 20 5") && // once the panel is shown
                    oPanel.widget("systemTimeForm_Label").rect().bottom() < screen.height());
        QVERIFY(oDisplay.tap(oPanel.widget("systemTimeForm_Label").rect().center()));
        QCOMPARE(oPanel.waitForText("ntpStatus_Label", "Last sync:64 secs ago"),
                 QString("Last sync:64 secs ago"));

        const QRect oDialog = oPanel.widget("DateTimeDialog").rect();
        QVERIFY(QRect(QPoint(), screen).contains(oDialog));
        const QList<sWidget> oWidgets = oPanel.widgets();
        for (const sWidget& oWidget : oWidgets) {
            QVERIFY2(oWidget["parent"] != "frame" || !oWidget["visible"].toBool() ||
                         (oDialog.contains(oWidget.rect()) &&
                          oWidget.rect().height() >= oWidget.rect("minimum").height()),
                     qPrintable(oWidget.name()));
        }

        const QByteArray oZone = contents("/etc/timezone") == "UTC\n" ? "Asia/Tokyo" : "UTC";
        QVERIFY(oDisplay.tap(oPanel.widget("timezone_ComboBox").rect().center()));
        QVERIFY(oDisplay.pointer("key ctrl+a type " + oZone));
        QCOMPARE(oPanel.waitForText("timezone_ComboBox", oZone), QString(oZone));
        QVERIFY(SimulatorProcess::succeeds(m_oService.steering().ClearCalls()));
        QVERIFY(oDisplay.tap(oPanel.widget("applyButton").rect().center()));
        QTRY_COMPARE(m_oService.calls().filter("/ServiceManager").join('\n'),
                     QString("/ServiceManager stop(\"ntpd\")\n/ServiceManager disable(\"ntpd\")"));
        QCOMPARE(contents("/etc/timezone"), oZone + '\n');
        QCOMPARE(QFile::symLinkTarget("/etc/localtime"), "/usr/share/zoneinfo/posix/" + oZone);
        QCOMPARE(oPanel.quit(), 0); // with the dialog open
    }

    void hangingToolDelaysNothing()
    {
        QCOMPARE(QProcess::execute("sh", {"-c", "echo '#!/bin/sh\necho $$ >/tmp/hangs\nexec sleep 1000' "
                                                ">/usr/bin/kadconfig-gen-timezones.sh"}),
                 0);
        const Display oDisplay({800, 1200});
        PanelProcess oPanel(oDisplay.name());
        QVERIFY(oPanel.start());
        QVERIFY(oDisplay.tap(oPanel.widget("systemTimeForm_Label").rect().center()));
        QVERIFY(oPanel.waitForVisible("DateTimeDialog"));
        QTRY_VERIFY(contents("/tmp/hangs").endsWith('\n'));
        const QString strTool = "/proc/" + contents("/tmp/hangs").trimmed();
        QVERIFY(QFile::exists(strTool));
        QCOMPARE(oPanel.quit(), 0);
        QTRY_VERIFY(!QFile::exists(strTool));
    }

private:
    PrivateBus m_oBus;
    SimulatorProcess m_oService;
};

QTEST_GUILESS_MAIN(TestDateTime)
#include "tst_datetime.moc"
