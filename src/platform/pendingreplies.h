#pragma once

#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QList>
#include <QObject>

#include <list>

/** A call that was sent to the platform service without waiting; the service replies with a number. */
struct sSentCall
{
    sSentCall(const char* szCalled, const QDBusPendingReply<int>& oPending)
        : szMember(szCalled), oReply(oPending)
    {
    }
    // With another type in the description of the interface a call does not compile.
    template<typename Other>
    sSentCall(const char*, const QDBusPendingReply<Other>&) = delete;

    const char* szMember; /**< the method that was called */
    QDBusPendingReply<int> oReply;
};

/**
 * Watches the replies to calls that were sent without waiting, and reports once when the last has arrived.
 *
 * A failure is one warning in the log. The object deletes itself after its report.
 */
class PendingReplies : public QObject
{
    Q_OBJECT

public:
    /** Reports from the event loop, also if all replies have arrived already. */
    PendingReplies(const QList<sSentCall>& oCalls, QObject* pParent);

signals:
    /**
     * The last reply has arrived, or its time has run out.
     * @param bTaken whether calls were sent and none got an error or a negative number
     */
    void finished(bool bTaken);

private slots:
    void onReply();
    void report();

private:
    QString failure() const;

    QList<sSentCall> m_oCalls;
    std::list<QDBusPendingCallWatcher> m_oWatchers;
    int m_nOpen;
};
