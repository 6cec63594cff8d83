#pragma once

#include <QProcess>

/** A program that runs beside the test and is killed with the object; its output is read line by line. */
class ChildProcess : public QProcess
{
public:
    /** Kills the program. */
    ~ChildProcess() override;

    /** Starts a program and returns its first line; null when it does not start, else as nextLine(). */
    QString startAndReadLine(const QString& strProgram, const QStringList& oArguments);

    /** Returns the next line without its line feed; null when the program ended or a minute passed. */
    QString nextLine();

    /** Closes its input and waits up to 30 s; returns whether it ended by itself with exit code 0. */
    bool endsWell();
};
