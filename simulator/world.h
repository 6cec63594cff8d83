#pragma once

#include <QDBusMessage>
#include <QObject>
#include <QString>
#include <QStringList>

/**
 * What goes wrong in the simulated service, one fault at a time, and the list of the calls that it received.
 *
 * docs/simulator.md lists the worlds by name, with their arguments.
 */
class World : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /** Sets up a world in place of the one before; returns false if there is no such world. The
     * argument is not checked. */
    bool set(const QString& strName, const QString& strArgument);

    /** Returns whether the present world is the one named. */
    bool is(const char* szName) const { return m_strName == QLatin1String(szName); }

    /** Returns whether the present world is the one named and concerns the member or interface given. */
    bool concerns(const char* szName, const QString& strWhat) const;

    /** Returns the argument of the present world without its milliseconds; empty for the default. */
    QString argument() const { return m_strArgument; }

    /** Returns the number in the argument, milliseconds or bytes, or its default; -1 for never. */
    int number() const { return m_nNumber; }

    /** Appends a call to the list, which keeps the latest 10,000, and writes it as one line to standard
     * output. */
    void noteCall(const QDBusMessage& oCall);

    /** Returns one line for each call kept, the earliest first: path, member, arguments as JSON. */
    QStringList calls() const { return m_oCalls; }

    /** Empties the list of calls. */
    void clearCalls() { m_oCalls.clear(); }

signals:
    /** Another world has been set up; sent before set() returns. */
    void changed();

private:
    QString m_strName = QStringLiteral("well");
    QString m_strArgument;
    int m_nNumber = -1;
    QStringList m_oCalls;
};
