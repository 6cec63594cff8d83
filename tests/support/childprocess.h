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

    /** Starts a program and returns its first line; a null text as nextLine(), or when it does not start. */
    QString startAndReadLine(const QString& strProgram, const QStringList& oArguments);

    /** Returns the next line without its line feed; a null text when the program ended or a minute passed. */
    QString nextLine();

    /** Closes its input, waits up to 30 s; true when it ended by itself with exit code 0, without a leak. */
    bool endsWell();

protected:
    void setupChildProcess() override;
};
