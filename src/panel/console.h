#pragma once

#include <QObject>
#include <string>

class QSocketNotifier;

/**
 * The command channel: reads the runtime's commands from standard input, one a line, and carries them out on
 * the panel, the platform client or the wink singleton. Standard output gets a greeting and a farewell,
 * nothing else.
 *
 * Its parent must be the TarnixUI panel that the commands are meant for.
 */
class Console : public QObject
{
    Q_OBJECT

public:
    /**
     * Keeps standard input, output and error from being mistaken: a stream that was closed before the start
     * is opened on the null device, so that no other descriptor gets its number, and writing to a reader that
     * has gone no longer ends the process. To be called before anything else opens a descriptor.
     */
    static void guardStandardStreams();

    /** @param pParent the panel (TarnixUI), which owns the console */
    explicit Console(QObject* pParent);

    /** Greets the runtime with "First message" and the prompt "> ", then starts to listen on standard input.
     */
    void run();

signals:
    /** The runtime sent "quit" or closed its end of standard input. */
    void quit();

private slots:
    /**
     * Carries out every complete line that has arrived, in order, and keeps what follows the last newline for
     * the next call. Never waits for input; gives the event loop a turn after a few milliseconds of work and
     * after each wink command, and then goes on.
     */
    void readCommand();

private:
    bool readInput();
    bool takeLine(std::string& strLine);
    void limitLine();
    void execute(const QString& strCommand);
    void leave();

    QSocketNotifier* m_notifier;
    bool bWinkInProgress = false; // never read; part of the layout that the device's other software knows

    std::string m_strInput;
    std::string::size_type m_nTaken = 0;    // start of the first line not carried out
    std::string::size_type m_nSearched = 0; // no newline lies between m_nTaken and here
    bool m_bDropLine = false;               // the rest of a line that was too long is still to come
    bool m_bEndOfInput = false;
};
