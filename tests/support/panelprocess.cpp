#include "support/panelprocess.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTest>

namespace {

constexpr int s_nPatience = 10000;

} // namespace

QRect sWidget::rect(const QString& strMember) const
{
    const QJsonArray oArray = value(strMember).toArray();
    return {oArray[0].toInt(), oArray[1].toInt(), oArray[2].toInt(), oArray[3].toInt()};
}

Display::Display(const QSize& oSize)
{
    const QString strScreen = QString("%1x%2x24").arg(oSize.width()).arg(oSize.height());
    m_oServer.start("Xvfb", {"-screen", "0", strScreen, "-nolisten", "tcp", "-displayfd", "1"});
    if (m_oServer.waitForReadyRead(s_nPatience)) {
        m_strName = ":" + m_oServer.readLine().trimmed();
    } else {
        qFatal("no virtual display");
    }
}

Display::~Display()
{
    m_oServer.kill();
    m_oServer.waitForFinished();
}

bool Display::pointer(const QString& strCommand) const
{
    QProcess oTool;
    QProcessEnvironment oEnvironment = QProcessEnvironment::systemEnvironment();
    oEnvironment.insert("DISPLAY", m_strName);
    oTool.setProcessEnvironment(oEnvironment);
    oTool.start("xdotool", strCommand.split(' '));
    return oTool.waitForFinished(s_nPatience) && oTool.exitCode() == 0;
}

bool Display::tap(const QPoint& oPoint) const
{
    return pointer(QString("mousemove %1 %2 click 1").arg(oPoint.x()).arg(oPoint.y()));
}

PanelProcess::PanelProcess(const QString& strDisplay)
{
    static int s_nSockets = 0;
    m_strSocket = QString("/tmp/probe-%1-%2").arg(QCoreApplication::applicationPid()).arg(++s_nSockets);
    QProcessEnvironment oEnvironment = QProcessEnvironment::systemEnvironment();
    oEnvironment.insert("QT_QPA_GENERIC_PLUGINS", "probe:" + m_strSocket);
    oEnvironment.insert("QT_PLUGIN_PATH", PROBE_PLUGIN_PATH);
    oEnvironment.insert("QT_QPA_PLATFORM", strDisplay.isEmpty() ? "offscreen" : "xcb");
    oEnvironment.insert("DISPLAY", strDisplay);
    m_oProcess.setProcessEnvironment(oEnvironment);
    m_oProcess.setProgram(PANEL_PROGRAM);
    m_oProcess.setStandardErrorFile(m_strSocket + ".log");
}

PanelProcess::~PanelProcess()
{
    m_oProcess.kill();
    m_oProcess.waitForFinished();
}

bool PanelProcess::start()
{
    m_oProcess.start();
    const bool bStarted = m_oProcess.waitForStarted() &&
                          QTest::qWaitFor([this] { return output().endsWith("> "); }, s_nPatience);
    if (!bStarted) {
        qWarning() << m_oProcess.errorString() << m_oProcess.state() << m_oProcess.exitStatus()
                   << m_oProcess.exitCode() << output() << log();
    }
    return bStarted;
}

void PanelProcess::send(const QByteArray& oBytes)
{
    m_oProcess.write(oBytes);
    m_oProcess.waitForBytesWritten(s_nPatience);
}

int PanelProcess::quit()
{
    send("quit\n");
    if (m_oProcess.state() != QProcess::NotRunning && !m_oProcess.waitForFinished(s_nPatience)) {
        return -1;
    }
    return m_oProcess.exitStatus() == QProcess::NormalExit ? m_oProcess.exitCode() : -1;
}

QByteArray PanelProcess::output()
{
    QCoreApplication::processEvents();
    return m_oOutput += m_oProcess.readAllStandardOutput();
}

QByteArray PanelProcess::log() const
{
    QFile oLog(m_strSocket + ".log");
    return oLog.open(QIODevice::ReadOnly) ? oLog.readAll() : QByteArray();
}

bool PanelProcess::waitForLog(const QByteArray& oText)
{
    return QTest::qWaitFor([&] { return log().contains(oText); }, s_nPatience);
}

QList<sWidget> PanelProcess::widgets()
{
    if (m_oProbe.state() != QLocalSocket::ConnectedState) {
        m_oProbe.connectToServer(m_strSocket);
        m_oProbe.waitForConnected(s_nPatience);
    }
    m_oProbe.write("\n");
    m_oProbe.flush();
    const QDeadlineTimer oDeadline(s_nPatience);
    while (!m_oProbe.canReadLine() && !oDeadline.hasExpired()) {
        m_oProbe.waitForReadyRead(s_nPatience);
    }
    QList<sWidget> oWidgets;
    const QJsonArray oAll = QJsonDocument::fromJson(m_oProbe.readLine()).array();
    for (const QJsonValue oValue : oAll) {
        oWidgets.append({oValue.toObject()});
    }
    return oWidgets;
}

sWidget PanelProcess::widget(const QString& strName)
{
    const QList<sWidget> oWidgets = widgets();
    const auto it = std::find_if(oWidgets.begin(), oWidgets.end(),
                                 [&](const sWidget& oWidget) { return oWidget.name() == strName; });
    return it == oWidgets.end() ? sWidget() : *it;
}

bool PanelProcess::waitForVisible(const QString& strName, bool bVisible)
{
    return QTest::qWaitFor([&] { return widget(strName)["visible"].toBool() == bVisible; }, s_nPatience);
}

QStringList PanelProcess::namelessTexts()
{
    QStringList oTexts;
    const QList<sWidget> oWidgets = widgets();
    for (const sWidget& oWidget : oWidgets) {
        if (oWidget.isVisibleLabel() && oWidget.name().isEmpty()) {
            oTexts.append(oWidget.text());
        }
    }
    return oTexts;
}

QString PanelProcess::waitForText(const QString& strName, const QString& strText)
{
    QString strShown;
    const bool bShown =
        QTest::qWaitFor([&] { return (strShown = widget(strName).text()) == strText; }, s_nPatience);
    return bShown ? strText : strShown;
}
