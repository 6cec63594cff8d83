#include "support/panelprocess.h"

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

VirtualDisplay::VirtualDisplay(const QSize& oSize)
{
    const QString strScreen = QString("%1x%2x24").arg(oSize.width()).arg(oSize.height());
    const QStringList oArguments = {"-screen", "0", strScreen, "-noreset", "-displayfd", "1"};
    m_strName = ":" + m_oServer.startAndReadLine("Xvfb", oArguments);
}

bool VirtualDisplay::pointer(const QString& strCommand) const
{
    const QStringList oTool = {"DISPLAY=" + m_strName, "xdotool"};
    return QProcess::execute("env", oTool + strCommand.split(' ')) == 0;
}

bool VirtualDisplay::tap(const QPoint& oPoint) const
{
    return pointer(QString("mousemove %1 %2 click 1").arg(oPoint.x()).arg(oPoint.y()));
}

PanelProcess::PanelProcess(const QString& strDisplay, const QString& strCommand)
{
    static int s_nSockets = 0;
    m_strSocket = QString("/tmp/probe-%1").arg(++s_nSockets);
    const QString strPlatform = strDisplay.isEmpty() ? "offscreen" : "xcb";
    m_oProcess.setProgram("env");
    m_oProcess.setArguments({"DISPLAY=" + strDisplay, "QT_QPA_PLATFORM=" + strPlatform,
                             "QT_QPA_GENERIC_PLUGINS=probe:" + m_strSocket,
                             QString("QT_PLUGIN_PATH=") + PROBE_PLUGIN_PATH, "sh", "-c", strCommand});
    m_oProcess.setStandardErrorFile(m_strSocket + ".log");
}

bool PanelProcess::start()
{
    m_oProcess.start();
    return QTest::qWaitFor([this] { return output().endsWith("> "); }, s_nPatience);
}

void PanelProcess::send(const QByteArray& oBytes)
{
    m_oProcess.write(oBytes);
    m_oProcess.waitForBytesWritten(s_nPatience);
}

int PanelProcess::quit()
{
    send("quit\n");
    const bool bEnded = m_oProcess.waitForFinished() || m_oProcess.state() == QProcess::NotRunning;
    return bEnded && m_oProcess.exitStatus() == QProcess::NormalExit ? m_oProcess.exitCode() : -1;
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

bool PanelProcess::waitForLog(const QByteArray& oText) const
{
    return QTest::qWaitFor([&] { return log().contains(oText); }, s_nPatience);
}

QByteArray PanelProcess::ask(const QByteArray& oLine)
{
    if (m_oProbe.state() != QLocalSocket::ConnectedState) {
        m_oProbe.connectToServer(m_strSocket);
    }
    m_oProbe.write(oLine + '\n');
    while (!m_oProbe.canReadLine() && m_oProbe.waitForReadyRead(s_nPatience)) {
    }
    return m_oProbe.readLine();
}

QImage PanelProcess::picture(const QString& strName)
{
    return QImage::fromData(QByteArray::fromBase64(ask("grab " + strName.toUtf8())));
}

QList<sWidget> PanelProcess::widgets()
{
    QList<sWidget> oWidgets;
    const QJsonArray oAll = QJsonDocument::fromJson(ask({})).array();
    for (const QJsonValue oValue : oAll) {
        oWidgets.append({oValue.toObject()});
    }
    return oWidgets;
}

sWidget PanelProcess::widget(const QString& strName)
{
    const QList<sWidget> oWidgets = widgets();
    const auto fnIsIt = [&](const sWidget& oWidget) { return oWidget.name() == strName; };
    const auto it = std::find_if(oWidgets.begin(), oWidgets.end(), fnIsIt);
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

bool PanelProcess::waitForTicks()
{
    const auto fnTime = [this] { return widget("systemTimeForm_Label").text(); };
    const auto fnTicks = [&] {
        return QTest::qWaitFor([&, strBefore = fnTime()] { return fnTime() != strBefore; });
    };
    const bool bTicks = fnTicks();
    return bTicks && fnTicks();
}

QString PanelProcess::waitForText(const QString& strName, const QString& strText)
{
    QString strShown;
    const auto fnIsShown = [&] { return (strShown = widget(strName).text()) == strText; };
    return QTest::qWaitFor(fnIsShown, s_nPatience) ? strText : strShown;
}
