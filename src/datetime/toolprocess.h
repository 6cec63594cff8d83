#pragma once

#include <QProcess>

/**
 * A tool of the platform that runs as a child process, in a process group of its own.
 *
 * It reads nothing: its standard input is the null device, never the command channel of the panel. Its
 * standard error is the panel's own, so its complaints appear in the panel's log.
 */
class ToolProcess : public QProcess
{
    Q_OBJECT

public:
    /** Prepares a process, to be started with QProcess::start(). */
    explicit ToolProcess(QObject* pParent);
    /** Ends the tool as end() does. */
    ~ToolProcess() override;

    /** Starts the shell with a script as its argument; does nothing if the script is empty. */
    void startScript(const QString& strScript);

    /** Changes how much of the output is used; 4096 bytes by default. */
    void setMaxOutput(int nMaxOutput) { m_nOutputLeft = nMaxOutput; }

    /**
     * Returns what the tool has written since the last call, as Latin-1 and up to the first NUL in it.
     *
     * Once all the output that is used has arrived, the tool is killed with all that it has started.
     */
    QString takeText();

    /**
     * Kills the tool, if it runs, with all that it has started; the state is QProcess::NotRunning afterwards.
     *
     * Waits only as long as a killed process takes to go; one that the kernel holds longer is given up.
     */
    void end();

private:
    void killGroup();
    // The formatter's versions differ on functions between #if and #endif.
    // clang-format off
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0) // has a virtual function in its place
    void setupChildProcess() override { m_fnModifier(); }
    void setChildProcessModifier(void (*fnModifier)()) { m_fnModifier = fnModifier; }

    void (*m_fnModifier)();
#endif
    // clang-format on
    int m_nOutputLeft;
};
