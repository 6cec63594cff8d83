#include "platform/pendingreplies.h"

#include <QDebug>

PendingReplies::PendingReplies(const QList<sSentCall>& oCalls, QObject* pParent)
    : QObject(pParent), m_oCalls(oCalls), m_nOpen(static_cast<int>(oCalls.size()))
{
    for (const sSentCall& oCall : oCalls) {
        m_oWatchers.emplace_back(oCall.oReply);
        connect(&m_oWatchers.back(), SIGNAL(finished(QDBusPendingCallWatcher*)), this, SLOT(onReply()));
    }
    if (oCalls.isEmpty()) {
        QMetaObject::invokeMethod(this, "report", Qt::QueuedConnection);
    }
}

void PendingReplies::onReply()
{
    if (--m_nOpen == 0) {
        report();
    }
}

void PendingReplies::report()
{
    const QString strFailure = failure();
    if (!strFailure.isEmpty()) {
        qWarning().noquote() << "Platform service failed:" << strFailure;
    }
    emit finished(strFailure.isEmpty());
    deleteLater();
}

/** Returns the members that failed and the first reason; empty if all is well. */
QString PendingReplies::failure() const
{
    QStringList oMembers;
    QString strReason;
    for (const sSentCall& oCall : m_oCalls) {
        const bool bError = oCall.oReply.isError();
        if (!bError && oCall.oReply.value() >= 0) {
            continue;
        }
        if (oMembers.isEmpty()) {
            strReason = bError ? oCall.oReply.error().message() : QStringLiteral("refused");
        }
        oMembers += oCall.szMember;
    }
    if (m_oCalls.isEmpty()) {
        return QStringLiteral("not connected");
    }
    return oMembers.isEmpty() ? QString() : oMembers.join(QStringLiteral(", ")) + ": " + strReason;
}
