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

struct sWinks : public QObject // in place of the overlay, which asks the platform service
{
    bool eventFilter(QObject* /*pWatched*/, QEvent* pEvent) override
    {
        return m_oTypes << pEvent->type(), true;
    }
    QVariantList m_oTypes;
};

static QVariantList outcomeOf(const QByteArray& oBytes, int nPiece, int nNextPiece)
{
    static TarnixUI& s_oPanel = *new TarnixUI;
    delete s_oPanel.findChild<Console*>();
    s_oPanel.setTargetVersion(QString());
    sWinks oWinks;
    EventGrabber::getInstance()->installEventFilter(&oWinks);
    int oPipe[2] = {-1, -1};
    bool bQuit = pipe(oPipe) != 0 || dup2(oPipe[0], STDIN_FILENO) != STDIN_FILENO || close(oPipe[0]) != 0;
    auto* pConsole = new Console(&s_oPanel);
    QObject::connect(pConsole, &Console::quit, [&] { bQuit = true; });
    pConsole->run();
    for (int nSent = 0; nSent < oBytes.size() && !bQuit; nSent += nPiece, std::swap(nPiece, nNextPiece)) {
        int nLeft =
            int(write(oPipe[1], oBytes.constData() + nSent, size_t(qMin(nPiece, oBytes.size() - nSent))));
        while (nLeft > 0 && !bQuit && ioctl(STDIN_FILENO, FIONREAD, &nLeft) == 0) {
            QCoreApplication::processEvents();
        }
    }
    while (!bQuit && s_oPanel.findChild<QLabel*>("targetVersionForm_Label")->text() != "obeys") {
        QCoreApplication::processEvents();
    }
    QCoreApplication::sendPostedEvents();
    close(oPipe[1]);
    QVariantList oOutcome{bQuit, oWinks.m_oTypes};
    for (const QLabel* pLabel :
         s_oPanel.findChildren<QLabel*>(QRegularExpression("^(?!system)"))) { // no clock
        oOutcome << pLabel->text() << pLabel->isHidden();
    }
    return oOutcome;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize)
{
    static int s_nArguments = 0;
    static const auto* s_pApplication = new QApplication(s_nArguments, nullptr);
    std::cout.setstate(std::ios::badbit); // a greeting for each console
    if (!s_pApplication || nSize < 2) {
        return 0;
    }
    const QByteArray oCommands =
        QByteArray(reinterpret_cast<const char*>(pData), int(nSize)).mid(2) + "\nvobeys\n";
    outcomeOf(oCommands, oCommands.size(), 1);
    if (outcomeOf(oCommands, oCommands.size(), 1) != outcomeOf(oCommands, pData[0] + 1, pData[1] + 1)) {
        std::abort();
    }
    return 0;
}
