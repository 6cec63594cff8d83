#pragma once

#include <QObject>
#include <string>

class QSocketNotifier;

/**
 * The command channel: reads the runtime's commands from standard input, one per line, and executes them on
 * the panel, the platform client or the wink singleton. Writes only a greeting and a farewell to standard
 * output.
 *
 * The commands are described in docs/runtime-protocol.md.
 */
class Console : public QObject
{
    Q_OBJECT

public:
    /**
     * Opens the null device for each closed standard stream, so that no other file gets its descriptor, and
     * ignores SIGPIPE, so that a reader that closes its end does not end the process. Call it before anything
     * else opens a descriptor.
     */
    static void guardStandardStreams();

    /** @param pParent the TarnixUI that executes the commands; it owns the console */
    explicit Console(QObject* pParent);

    /** Writes "First message", a newline and the prompt "> ", then starts to listen on standard input. */
    void run();

signals:
    /** The runtime sent "quit" or closed its end of standard input. */
    void quit();

private slots:
    /**
     * Executes every complete line that has arrived, in order, and keeps the rest for the next call. Never
     * waits for input. Returns to the event loop after 20 ms of work and after each wink command, then
     * continues.
     */
    void readCommand();

private:
    bool readInput();
    bool takeLine(std::string& strLine);
    void limitLine();
    bool execute(const QString& strCommand);
    void leave();

    QSocketNotifier* m_notifier;
    bool bWinkInProgress = false; // Kept, see docs/compatibility.md

    std::string m_strInput;
    std::string::size_type m_nTaken = 0;    // start of the first line not executed
    std::string::size_type m_nSearched = 0; // no newline lies between m_nTaken and here
    bool m_bDropLine = false;               // the rest of a line that is too long is still to come
    bool m_bEndOfInput = false;
};
