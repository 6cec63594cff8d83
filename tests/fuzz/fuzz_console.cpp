// Sends any bytes to a panel at once and to another in pieces, whose sizes the first two bytes tell. Both
// must end up the same and still obey.
#include "panel/console.h"
#include "panel/tarnixUIwidget.h"
#include "platform/ovikplatform.h"
#include "wink/winkwidget.h"

#include <QApplication>
#include <QLabel>

#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <sys/ioctl.h>
#include <unistd.h>

namespace {

constexpr char s_szLast[] = "\nvobeys\n";

/** Keeps the winks from the overlay, which asks the platform service. */
class WinkRecorder : public QObject
{
public:
    bool eventFilter(QObject* pWatched, QEvent* pEvent) override
    {
        Q_UNUSED(pWatched)
        m_oOutcome.append(QString::number(pEvent->type()));
        return true;
    }

    QStringList m_oOutcome;
};

void send(int nPipe, const QByteArray& oBytes, const bool& bQuit)
{
    if (write(nPipe, oBytes.constData(), size_t(oBytes.size())) != oBytes.size()) {
        std::abort();
    }
    QCoreApplication::processEvents();
    for (int nLeft = 1; nLeft > 0 && !bQuit; QCoreApplication::processEvents()) {
        ioctl(STDIN_FILENO, FIONREAD, &nLeft);
    }
}

/** Returns the texts of a panel and the winks after it was told the bytes in pieces of two sizes in turn. */
QStringList outcomeOf(const QByteArray& oBytes, int nPiece, int nNextPiece)
{
    int oPipe[2];
    if (pipe(oPipe) != 0 || dup2(oPipe[0], STDIN_FILENO) != STDIN_FILENO) {
        std::abort();
    }
    close(oPipe[0]);
    OVIKPlatform::getInstance()->SetDeviceNameAsString(QString());
    WinkRecorder oRecorder;
    EventGrabber::getInstance()->installEventFilter(&oRecorder);
    QStringList oOutcome;
    {
        TarnixUI oPanel;
        bool bQuit = false;
        QObject::connect(oPanel.findChild<Console*>(), &Console::quit, [&] { bQuit = true; });
        for (int nSent = 0; nSent < oBytes.size() && !bQuit; nSent += nPiece, std::swap(nPiece, nNextPiece)) {
            send(oPipe[1], oBytes.mid(nSent, nPiece), bQuit);
        }
        const auto* pVersion = oPanel.findChild<QLabel*>("targetVersionForm_Label");
        while (!bQuit && pVersion->text() != "obeys") {
            QCoreApplication::processEvents();
        }
        QCoreApplication::sendPostedEvents();
        oOutcome << QString::number(bQuit) << OVIKPlatform::getInstance()->GetDeviceNameAsString();
        for (const QLabel* pLabel : oPanel.findChildren<QLabel*>()) {
            if (!pLabel->objectName().startsWith("system")) { // the clock
                oOutcome << pLabel->text() << QString::number(pLabel->isHidden());
            }
        }
    }
    close(oPipe[1]);
    return oOutcome + oRecorder.m_oOutcome;
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* pCount, char*** pArguments)
{
    new QApplication(*pCount, *pArguments);
    std::cout.setstate(std::ios::badbit); // one greeting for each panel
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize)
{
    if (nSize < 2) {
        return 0;
    }
    const QByteArray oBytes = QByteArray(reinterpret_cast<const char*>(pData + 2), int(nSize) - 2) + s_szLast;
    if (outcomeOf(oBytes, pData[0] + 1, pData[1] + 1) != outcomeOf(oBytes, oBytes.size(), 1)) {
        std::abort();
    }
    return 0;
}
