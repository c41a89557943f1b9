#include "platform/linux/base/DBusCall.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>

void callAsynchronously(const QDBusMessage &call, QObject *receiver, DBusAnswerHandler handler,
                        int timeout)
{
    auto *const answer = new QDBusPendingCallWatcher(
        QDBusConnection::sessionBus().asyncCall(call, timeout), receiver);
    QObject::connect(answer, &QDBusPendingCallWatcher::finished, answer,
                     [answer, handler = std::move(handler)] {
                         answer->deleteLater();
                         handler(answer->reply());
                     });
}
