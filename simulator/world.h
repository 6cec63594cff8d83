#pragma once

#include <QDBusMessage>
#include <QObject>
#include <QString>
#include <QStringList>

/** What goes wrong in the simulated service, one fault at a time, and the list of the calls that it received.
 */
class World : public QObject
{
    Q_OBJECT

public:
    /** The faults; each has a name of its own, see names(). */
    enum eFault {
        eFault_None,          /**< the service is well */
        eFault_Absent,        /**< the service is not on the bus */
        eFault_RootLate,      /**< the object "/" comes after some milliseconds, without an argument never */
        eFault_Errors,        /**< error replies, of the member given or of all */
        eFault_Silent,        /**< no replies, of the member given or of all */
        eFault_MalformedJSON, /**< the text given, by default half a document, in place of JSON */
        eFault_WrongTypes,    /**< replies of another D-Bus type, with "json" JSON values of another type */
        eFault_ShortRecords,  /**< byte arrays of the length given in the records, by default 2 */
        eFault_UnknownInterface, /**< the network interface given, or each, is not known */
        eFault_Vanishes,         /**< dies at a call of the member given and comes back after milliseconds */
        eFault_Slow              /**< each reply comes after the milliseconds given */
    };

    using QObject::QObject;

    /** Returns the names of the worlds, "well" first, in the order of the faults. */
    static QStringList names();

    /**
     * Sets up a world; the fault before is over.
     *
     * Returns false and changes nothing when there is no world of that name, or the argument is not of the
     * kind that it takes: nothing, a number, "json". Members and network interfaces are not looked up: one
     * that does not exist strikes nothing.
     */
    bool set(const QString& strName, const QString& strArgument);

    /** Returns the present fault. */
    eFault fault() const { return m_eFault; }

    /** Returns the text that the present fault came with: a member, an interface or a text; empty for the
     * default. */
    QString argument() const { return m_strArgument; }

    /** Returns the present fault's number: a delay in milliseconds or a length in bytes; -1 for never. */
    int number() const { return m_nNumber; }

    /** Tells whether the present fault is the one given and concerns the member given. */
    bool strikes(eFault eWanted, const QString& strMember) const;

    /**
     * Appends a call to the list and writes it as one line to standard output.
     *
     * The list holds 8 million characters (16 MB): the oldest lines give way.
     */
    void noteCall(const QDBusMessage& oCall);

    /** Returns one line for each call kept, the earliest first: path, member, arguments as JSON. */
    QStringList calls() const { return m_oCalls; }

    /** Empties the list of calls. */
    void clearCalls();

    /** Has the service die and come back; to be called while a call is handled that must not be replied to.
     */
    void vanish() { emit vanishing(); }

signals:
    /** Another world has been set up; sent before set() returns. */
    void changed();

    /** The service has to die once its present call is handled. */
    void vanishing();

private:
    eFault m_eFault = eFault_None;
    QString m_strArgument;
    int m_nNumber = -1;
    QStringList m_oCalls;
    int m_nCallCharacters = 0;
};
