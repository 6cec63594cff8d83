// Sends arbitrary bytes to the panel at once, then in pieces of two sizes, given by the first two bytes. Both
// times the panel must end, or execute the next command and show the same.
#include "panel/console.h"
#include "panel/tarnixUIwidget.h"
#include "support/difference.h"
#include "wink/winkwidget.h"

#include <QApplication>
#include <QDebug>
#include <QLabel>
#include <QRegularExpression>
#include <cstdint>
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
    int oPipe[2] = {-1, -1};
    bool bQuit = pipe(oPipe) != 0 || dup2(oPipe[0], STDIN_FILENO) != STDIN_FILENO || close(oPipe[0]) != 0;
    sWinks oWinks;
    EventGrabber::getInstance()->installEventFilter(&oWinks);
    static TarnixUI& s_oPanel = *new TarnixUI;
    delete s_oPanel.findChild<Console*>();
    s_oPanel.setTargetVersion(QString());
    auto* pConsole = new Console(&s_oPanel);
    QObject::connect(pConsole, &Console::quit, [&] { bQuit = true; });
    pConsole->run();
    for (int nSent = 0; nSent < oBytes.size() && !bQuit; nSent += nPiece, std::swap(nPiece, nNextPiece)) {
        const QByteArray oPiece = oBytes.mid(nSent, nPiece);
        auto nLeft = static_cast<int>(write(oPipe[1], oPiece.data(), static_cast<size_t>(oPiece.size())));
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

static QByteArray textOf(const QVariantList& oOutcome)
{
    QString strText;
    QDebug(&strText) << oOutcome;
    return strText.toUtf8();
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize)
{
    static int s_nArguments = 0;
    [[maybe_unused]] static const auto* s_pApplication = new QApplication(s_nArguments, nullptr);
    std::cout.setstate(std::ios::badbit); // a greeting of each console
    if (nSize >= 2) {
        const auto oInput = QByteArray(reinterpret_cast<const char*>(pData), static_cast<int>(nSize));
        const QByteArray oCommands = oInput.mid(2) + "\nvobeys\n";
        const auto nAll = static_cast<int>(oCommands.size());
        outcomeOf(oCommands, nAll, 1); // makes the rows
        const QVariantList oAtOnce = outcomeOf(oCommands, nAll, 1);
        const QVariantList oInPieces = outcomeOf(oCommands, pData[0] + 1, pData[1] + 1);
        if (oInPieces != oAtOnce) {
            std::cerr << "In pieces the outcome differs "
                      << difference(textOf(oInPieces), textOf(oAtOnce)).data() << std::endl;
            std::abort();
        }
    }
    return 0;
}
