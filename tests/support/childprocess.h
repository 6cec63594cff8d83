#pragma once

#include <QProcess>

/** A program that is run beside the test, read line by line (both outputs), and killed with the test. */
class ChildProcess : public QProcess
{
    Q_OBJECT

public:
    ChildProcess();
    /** Kills the program. */
    ~ChildProcess() override;

    /** Starts a program and returns its first line, or a null text when it could not be started, ended
     * without a line, or wrote none within a minute. */
    QString startAndReadLine(const QString& strProgram, const QStringList& oArguments);

    /** Returns the next line without its line feed; a null text when the program ended or a minute passed. */
    QString nextLine();

    /** Waits up to 30 s for the end; returns true when it ended by itself with exit code 0, thus without a
     * leak. */
    bool endsWell();

protected:
    void setupChildProcess() override;
};
