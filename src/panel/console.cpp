#include "panel/console.h"

#include "panel/tarnixUIwidget.h"
#include "platform/ovikplatform.h"
#include "wink/winkwidget.h"

#include <QCoreApplication>
#include <QDebug>
#include <QElapsedTimer>
#include <QEvent>
#include <QSocketNotifier>
#include <QTimer>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <iostream>
#include <poll.h>
#include <unistd.h>

namespace {

constexpr std::size_t s_nChunkSize = 65536;
constexpr std::size_t s_nMaxLineSize = 4194304;
constexpr qint64 s_nWorkMilliseconds = 20; // a touch is answered within a tenth of a second
constexpr int s_nIndexPosition = 1;
constexpr int s_nIndexLength = 3;
constexpr int s_nTextPosition = s_nIndexPosition + s_nIndexLength;

int inputDescriptor()
{
    return fileno(stdin);
}

bool isInputReady()
{
    pollfd oPoll{inputDescriptor(), POLLIN, 0};
    return poll(&oPoll, 1, 0) > 0;
}

int indexOf(const QString& strCommand)
{
    // Kept, see docs/compatibility.md
    return strCommand.mid(s_nIndexPosition, s_nIndexLength).toInt();
}

void postWink(eWinkEvent eType)
{
    QCoreApplication::postEvent(EventGrabber::getInstance(), new QEvent(static_cast<QEvent::Type>(eType)));
}

} // namespace

void Console::guardStandardStreams()
{
    std::signal(SIGPIPE, SIG_IGN);
    int nDescriptor = open("/dev/null", O_RDWR);
    while (nDescriptor >= 0 && nDescriptor <= STDERR_FILENO) {
        nDescriptor = dup(nDescriptor);
    }
    close(nDescriptor);
}

Console::Console(QObject* pParent)
    : QObject(pParent), m_notifier(new QSocketNotifier(inputDescriptor(), QSocketNotifier::Read, this))
{
}

void Console::run()
{
    std::cout << "First message" << std::endl;
    std::cout << "> " << std::flush;
    connect(m_notifier, SIGNAL(activated(int)), this, SLOT(readCommand()));
}

void Console::readCommand()
{
    m_notifier->setEnabled(false);
    QElapsedTimer oWork;
    oWork.start();

    std::string strLine;
    bool bPosted = false;
    for (;;) {
        if (bPosted || oWork.hasExpired(s_nWorkMilliseconds)) {
            QTimer::singleShot(0, this, SLOT(readCommand()));
            return;
        }
        if (takeLine(strLine)) {
            if (strLine == "quit") {
                leave();
                return;
            }
            bPosted = execute(QString::fromUtf8(strLine.c_str()));
        } else if (!readInput()) {
            break;
        }
    }

    if (m_bEndOfInput) {
        leave(); // Kept, see docs/compatibility.md
        return;
    }
    m_notifier->setEnabled(true);
}

// Appends available input; returns false if there is none.
bool Console::readInput()
{
    if (!isInputReady()) {
        return false;
    }
    m_strInput.erase(0, m_nTaken);
    m_nSearched -= m_nTaken;
    m_nTaken = 0;

    char aChunk[s_nChunkSize];
    const ssize_t nRead = read(inputDescriptor(), aChunk, sizeof aChunk);
    if (nRead > 0) {
        m_strInput.append(aChunk, static_cast<std::size_t>(nRead));
        return true;
    }
    if (nRead < 0 && (errno == EINTR || errno == EAGAIN)) {
        return false;
    }
    if (nRead < 0) {
        qWarning() << "Cannot read standard input" << strerror(errno);
    }
    m_bEndOfInput = true;
    return false;
}

bool Console::takeLine(std::string& strLine)
{
    std::string::size_type nEnd = m_strInput.find('\n', m_nSearched);
    if (m_bDropLine && nEnd != std::string::npos) {
        m_bDropLine = false;
        m_nTaken = nEnd + 1;
        nEnd = m_strInput.find('\n', m_nTaken);
    }
    if (nEnd == std::string::npos) {
        m_nSearched = m_strInput.size();
        limitLine();
        return false;
    }
    strLine.assign(m_strInput, m_nTaken, nEnd - m_nTaken);
    m_nTaken = nEnd + 1;
    m_nSearched = m_nTaken;
    return true;
}

// Bounds the memory that a line without end can take.
void Console::limitLine()
{
    if (m_strInput.size() - m_nTaken <= s_nMaxLineSize) {
        return;
    }
    if (!m_bDropLine) {
        qWarning() << "Command line longer than" << s_nMaxLineSize << "bytes dropped";
    }
    m_bDropLine = true;
    m_strInput.clear();
    m_nTaken = 0;
    m_nSearched = 0;
}

// Returns whether the command takes effect only when the event loop runs.
bool Console::execute(const QString& strCommand)
{
    auto* pPanel = static_cast<TarnixUI*>(parent());
    if (strCommand.startsWith("i")) {
        pPanel->setIdentNo(strCommand.mid(1));
    } else if (strCommand.startsWith("d")) {
        const QString strName = strCommand.mid(1);
        OVIKPlatform::getInstance()->SetDeviceNameAsString(strName);
        pPanel->setDeviceType(strName);
    } else if (strCommand.startsWith("v")) {
        pPanel->setTargetVersion(strCommand.mid(1));
    } else if (strCommand.startsWith("n")) {
        pPanel->setNumberOfAppsinUI(strCommand.mid(1).toInt());
    } else if (strCommand.startsWith("a")) {
        pPanel->setApplicationName(strCommand.mid(s_nTextPosition), indexOf(strCommand));
    } else if (strCommand.startsWith("s")) {
        pPanel->setPLCStatus(strCommand.mid(s_nTextPosition), indexOf(strCommand));
    } else if (strCommand.startsWith("w0") || strCommand.startsWith("w1")) {
        postWink(strCommand.startsWith("w0") ? eWinkEvent_Off : eWinkEvent_On);
        return true;
    }
    return false;
}

void Console::leave()
{
    m_notifier->setEnabled(false);
    std::cout << "Good bye!" << std::endl;
    emit quit();
}
