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

    /** Starts the program and waits until it writes a line; returns the line, a null text when it does not.
     */
    QString startAndReadLine(const QString& strProgram, const QStringList& oArguments);

    /** Returns the next line without its line feed; a null text when none came within a minute. */
    QString nextLine();

protected:
    void setupChildProcess() override;
};
