#include "support/panelprocess.h"
#include "support/privatebus.h"
#include "support/simulatorprocess.h"

#include <QDateTime>
#include <QFile>
#include <QLocale>
#include <QTest>

namespace {

QByteArray contents(const QString& strPath)
{
    QFile oFile(strPath);
    return oFile.open(QIODevice::ReadOnly) ? oFile.readAll() : QByteArray();
}

} // namespace

/** The date and time dialog under the finger of an operator, on screens of every size. */
class TestDateTime : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QCOMPARE(QProcess::execute("ip", {"link", "add", "eth0", "type", "veth", "peer", "name", "eth1"}), 0);
        QVERIFY(m_oBus.start() && m_oService.start(m_oBus));
        qputenv("DBUS_SYSTEM_BUS_ADDRESS", m_oBus.address().toUtf8());
    }

    void init()
    {
        const QStringList oSize = QString(QTest::currentDataTag()).split('x');
        m_oScreen = QRect(0, 0, oSize[0].toInt(), oSize[1].toInt());
        QCOMPARE(QProcess::execute(DEVICE_TOOLS, {}), 0);
        m_pDisplay = std::make_unique<Display>(m_oScreen.size());
        m_pPanel = std::make_unique<PanelProcess>(m_pDisplay->name());
        QVERIFY(m_pPanel->start());
        QTRY_VERIFY(m_pDisplay->pointer("mousemove 100 200 click --repeat 20 5") && // once the panel is shown
                    m_oScreen.contains(rect("systemTimeForm_Label")));
        QVERIFY(m_pDisplay->tap(rect("systemTimeForm_Label").center()));
        QCOMPARE(m_pPanel->waitForText("ntpStatus_Label", "Last sync:64 secs ago"), "Last sync:64 secs ago");
    }

    void cleanup()
    {
        QCOMPARE(m_pPanel->quit(), 0); // with the dialog open
        m_pPanel.reset();
        m_pDisplay.reset();
    }

    void obeysFinger_data()
    {
        QTest::addColumn<int>("cell"); // least width and height of a day
        const std::pair<const char*, int> aSizes[] = {
            {"240x320", 34}, {"320x240", 36}, {"272x480", 38},  {"480x272", 40},  {"480x320", 40},
            {"481x272", 40}, {"800x480", 48}, {"600x1024", 48}, {"1024x600", 48}, {"1280x800", 48}};
        for (const auto& [szSize, nCell] : aSizes) {
            QTest::newRow(szSize) << nCell;
        }
    }

    void obeysFinger()
    {
        QVERIFY(m_oScreen.contains(rect("DateTimeDialog")));
        picksZone();
        usesCalendar();
        steps();
        applies();
    }

private:
    void picksZone()
    {
        tapEnd("timezone_ComboBox");
        const QRect oField = rect("timezone_ComboBox");
        const QString strOld = text("timezone_ComboBox");
        const QPoint oRow(oField.center().x(), oField.bottom() + (m_oScreen.bottom() - oField.bottom()) / 2);
        QVERIFY(drag(oRow, 60) && drag(oRow, -30));
        QCOMPARE(text("timezone_ComboBox"), strOld);
        QVERIFY(m_pDisplay->tap(oRow));
        QTRY_VERIFY(text("timezone_ComboBox") != strOld);

        QVERIFY(tap("timezone_ComboBox") && m_pDisplay->pointer("key ctrl+a type okyo"));
        QVERIFY(m_pPanel->waitForVisible("choices"));
        QVERIFY(m_oScreen.contains(rect("choices")) && rect("choices").height() >= 40);
        QCOMPARE(m_pPanel->waitForText("timezone_ComboBox", "okyo"), "okyo"); // what is typed stays
        QVERIFY(m_pDisplay->tap(rect("choices").center()));
        QCOMPARE(m_pPanel->waitForText("timezone_ComboBox", "Asia/Tokyo"), "Asia/Tokyo");
    }

    void usesCalendar()
    {
        QFETCH(int, cell);
        const QDate oOld = shown().date();
        tapEnd("currentDate_DateEdit");
        QVERIFY(m_pPanel->waitForVisible("calendarBar"));
        const QRect oDays = rect("qt_calendar_calendarview");
        const QSize oCell(oDays.width() / 7, (oDays.height() - 22) / 6);
        QVERIFY(m_oScreen.contains(oDays) && oCell.width() >= cell && oCell.height() >= qMax(cell, 36));
        for (const char* szButton : {"previousMonth", "nextMonth", "previousYear", "nextYear", "nextYear"}) {
            QVERIFY(m_oScreen.contains(rect(szButton)) && rect(szButton).width() >= 36 &&
                    rect(szButton).height() >= 36);
            QVERIFY(m_pDisplay->tap(rect(szButton).center()));
        }
        QVERIFY(m_pDisplay->tap(oDays.topLeft() + QPoint(oCell.width() * 3, 22 + oCell.height() * 2) +
                                QPoint(9, 9)));
        QTRY_VERIFY(!isVisible("calendarBar"));
        QTRY_COMPARE(shown().date().toString("MM/yyyy"), oOld.addYears(1).toString("MM/yyyy"));
        QCOMPARE(shown().date().dayOfWeek(), int(Qt::Thursday));
    }

    // Taps a part of the date and time; nPlace is how far to the right it stands, in percent.
    bool tapPart(const char* szName, int nPlace)
    {
        reach("currentDate_DateEdit");
        const QRect oText = rect("qt_spinbox_lineedit");
        const int nWidth = rect("ntpStatus_Label").height() * 8; // of the text
        m_pDisplay->tap({oText.left() + nWidth * nPlace / 100, oText.center().y()});
        return m_pPanel->waitForText("stepPart", szName) == szName;
    }

    void steps()
    {
        const std::tuple<const char*, int, const char*> aParts[] = {{"Month", 20, "03"},
                                                                    {"Year", 40, "2031"},
                                                                    {"Day", 5, "17"},
                                                                    {"Hour", 60, "07"},
                                                                    {"Minute", 75, "10"}};
        for (const auto& [szPart, nPlace, szTyped] : aParts) {
            QVERIFY2(tapPart(szPart, nPlace) && m_pDisplay->pointer(QString("type ") + szTyped), szPart);
        }
        QTRY_COMPARE(shown().toString("dd/MM/yyyy hh:mm").replace("19:", "07:"), "17/03/2031 07:10");
        const QDateTime oTyped = shown();
        QVERIFY(tapPart("Minute", 75));
        const QPoint oUp = reach("stepUp").center();
        QVERIFY(m_pDisplay->pointer(
            QString("mousemove %1 %2 mousedown 1 sleep 2 mouseup 1").arg(oUp.x()).arg(oUp.y())));
        QTRY_VERIFY(oTyped.secsTo(shown()) >= 5 * 60 && oTyped.secsTo(shown()) < 50 * 60);
        const QDateTime oHeld = shown();
        QVERIFY(tapPart("AM/PM", 95) && tap("stepUp"));
        QTRY_COMPARE(qAbs(oHeld.secsTo(shown())), 12 * 60 * 60);
        QVERIFY(tap("stepDown") && tapPart("Day", 5) && tap("stepDown"));
        QTRY_COMPARE(shown(), oHeld.addDays(-1));
    }

    void applies()
    {
        for (const bool bChecked : {true, false}) {
            tapEnd("autoUpdate_CheckBox");
            QTRY_COMPARE(m_pPanel->widget("autoUpdate_CheckBox")["checked"].toBool(), bChecked);
        }
        QVERIFY(SimulatorProcess::succeeds(m_oService.steering().ClearCalls()));
        QVERIFY(m_pDisplay->tap(rect("applyButton").center()));
        QTRY_COMPARE(m_oService.calls().filter("/ServiceManager").join('\n'),
                     QString("/ServiceManager stop(\"ntpd\")\n/ServiceManager disable(\"ntpd\")"));
        QCOMPARE(contents("/etc/timezone"), "Asia/Tokyo\n");
        QVERIFY(m_pPanel->waitForLog("saveDateTime failed")); // the sandbox forbids it
    }

    QString text(const char* szName) { return m_pPanel->widget(szName).text(); }
    QRect rect(const char* szName) { return m_pPanel->widget(szName).rect(); }
    bool isVisible(const char* szName) { return m_pPanel->widget(szName)["visible"].toBool(); }
    QDateTime shown() { return QLocale::c().toDateTime(text("currentDate_DateEdit"), "dd/MM/yyyy hh:mm AP"); }

    bool drag(const QPoint& oFrom, int nBy)
    {
        QString strWords = QString("mousemove %1 %2 mousedown 1").arg(oFrom.x()).arg(oFrom.y());
        for (int i = 1; i <= 8; ++i) {
            strWords += QString(" mousemove %1 %2 sleep 0.015").arg(oFrom.x()).arg(oFrom.y() + nBy * i / 8);
        }
        const bool bDone = m_pDisplay->pointer(strWords + " sleep 0.3 mouseup 1");
        QTest::qWait(300); // until nothing moves
        return bDone;
    }

    // Drags the fields until the middle of one can be tapped.
    QRect reach(const char* szName)
    {
        const QRect oArea = rect("formArea");
        QRect oRect = rect(szName);
        for (int i = 0; i < 9 && !oArea.adjusted(0, 12, 0, -12).contains(oRect.center()); ++i) {
            const int nBy = oRect.top() < oArea.top() ? 60 : -60;
            drag({oArea.center().x(), oArea.center().y() - nBy / 2}, nBy);
            oRect = rect(szName);
        }
        return oRect;
    }

    bool tap(const char* szName) { return m_pDisplay->tap(reach(szName).center()); }

    void tapEnd(const char* szName)
    {
        const QRect oRect = reach(szName);
        m_pDisplay->tap({oRect.right() - 6, oRect.center().y()});
    }

    PrivateBus m_oBus;
    SimulatorProcess m_oService;
    QRect m_oScreen;
    std::unique_ptr<Display> m_pDisplay;
    std::unique_ptr<PanelProcess> m_pPanel;
};

QTEST_GUILESS_MAIN(TestDateTime)
#include "tst_datetime.moc"
