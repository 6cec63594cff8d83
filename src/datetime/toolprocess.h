#pragma once

#include <QProcess>

/**
 * A tool of the platform that runs as a child process, in a process group of its own.
 *
 * It reads nothing: its standard input is the null device, never the command channel of the panel. Its
 * standard error is the panel's own, so what it complains about stands in the panel's log.
 */
class ToolProcess : public QProcess
{
    Q_OBJECT

public:
    /** Prepares a process, to be started with QProcess::start(). */
    explicit ToolProcess(QObject* pParent);
    /** Ends the tool as close() does. */
    ~ToolProcess() override;

    /**
     * Kills the tool, if it runs, with all that it has started, and emits the signals of its end.
     *
     * Waits only as long as a killed process takes to go. One that the kernel holds longer is left to itself.
     */
    void close() override;

    /** Kills the tool, which must run, with all that it has started, and waits for nothing. */
    void killGroup();

protected:
    /** Gives the child its process group. */
    void setupChildProcess() override;
};
