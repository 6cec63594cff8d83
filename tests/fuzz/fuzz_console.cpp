// Sends any bytes to the panel twice at once, then in pieces of two sizes that the first two bytes tell: the
// second and the third time must end the same, with a panel that obeys. The first makes the rows that the
// bytes ask for.
#include "panel/console.h"
#include "panel/tarnixUIwidget.h"
#include "wink/winkwidget.h"

#include <QApplication>
#include <QLabel>
#include <QRegularExpression>
#include <cstdlib>
#include <iostream>
#include <sys/ioctl.h>
#include <unistd.h>

namespace {

struct sWinks : public QObject // instead of the overlay, which asks the platform service
{
    bool eventFilter(QObject*, QEvent* pEvent) override { return m_oTypes.append(pEvent->type()), true; }
    QList<int> m_oTypes;
};

QStringList outcomeOf(const QByteArray& oBytes, int nPiece, int nNextPiece)
{
    static TarnixUI& s_oPanel = *new TarnixUI;
    delete s_oPanel.findChild<Console*>();
    s_oPanel.setTargetVersion(QString());
    sWinks oWinks;
    EventGrabber::getInstance()->installEventFilter(&oWinks);
    int oPipe[2] = {-1, -1};
    if (pipe(oPipe) != 0 || dup2(oPipe[0], STDIN_FILENO) != STDIN_FILENO || close(oPipe[0]) != 0) {
        std::abort();
    }
    auto* pConsole = new Console(&s_oPanel);
    bool bQuit = false;
    QObject::connect(pConsole, &Console::quit, [&] { bQuit = true; });
    pConsole->run();
    for (int nSent = 0; nSent < oBytes.size() && !bQuit; nSent += nPiece, std::swap(nPiece, nNextPiece)) {
        const QByteArray oPiece = oBytes.mid(nSent, nPiece);
        int nLeft = int(write(oPipe[1], oPiece.constData(), size_t(oPiece.size())));
        while (nLeft > 0 && !bQuit && ioctl(STDIN_FILENO, FIONREAD, &nLeft) == 0) {
            QCoreApplication::processEvents();
        }
    }
    const auto* pVersion = s_oPanel.findChild<QLabel*>("targetVersionForm_Label");
    while (!bQuit && pVersion->text() != "obeys") {
        QCoreApplication::processEvents();
    }
    QCoreApplication::sendPostedEvents();
    close(oPipe[1]);
    QStringList oOutcome{QVariant(bQuit).toString()};
    for (const int nType : oWinks.m_oTypes) {
        oOutcome << QString::number(nType);
    }
    for (const QLabel* pLabel :
         s_oPanel.findChildren<QLabel*>(QRegularExpression("^(?!system)"))) { // no clock
        oOutcome << pLabel->text() << QVariant(pLabel->isHidden()).toString();
    }
    return oOutcome;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize)
{
    static int s_nArguments = 0;
    static const auto* s_pApplication = new QApplication(s_nArguments, nullptr);
    Q_UNUSED(s_pApplication)
    std::cout.setstate(std::ios::badbit); // a greeting for each console
    if (nSize < 2) {
        return 0;
    }
    const QByteArray oBytes(reinterpret_cast<const char*>(pData), int(nSize));
    const QByteArray oCommands = oBytes.mid(2) + "\nvobeys\n";
    outcomeOf(oCommands, oCommands.size(), 1);
    const QStringList oOutcome = outcomeOf(oCommands, oCommands.size(), 1);
    if (outcomeOf(oCommands, pData[0] + 1, pData[1] + 1) != oOutcome) {
        std::abort();
    }
    return 0;
}
