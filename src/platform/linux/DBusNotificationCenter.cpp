#include "platform/linux/DBusNotificationCenter.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QStringList>
#include <QVariantMap>

using namespace Qt::StringLiterals;

namespace
{
const QString service = u"org.freedesktop.Notifications"_s;

QDBusMessage callOfService(const QString &method)
{
    return QDBusMessage::createMethodCall(service, u"/org/freedesktop/Notifications"_s, service,
                                          method);
}

QDBusMessage callOfBus(const QString &method)
{
    return QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s,
                                          u"org.freedesktop.DBus"_s, method);
}

/// Calls without waiting; the value is nothing if the answer is an error.
template <typename Value>
void call(const QDBusMessage &message, std::function<void(std::optional<Value>)> completion)
{
    auto *const answer =
        new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(message));
    QObject::connect(answer, &QDBusPendingCallWatcher::finished, answer,
                     [answer, completion = std::move(completion)] {
                         answer->deleteLater();
                         const QDBusPendingReply<Value> reply = *answer;
                         completion(reply.isError() ? std::nullopt : std::optional(reply.value()));
                     });
}

void notify(const NotificationRequest &request, const QString &body, const QString &desktopEntry)
{
    constexpr uint replacesNone = 0;
    constexpr int expiresByDefault = -1;
    const QVariantMap hints{{u"desktop-entry"_s, desktopEntry}, {u"suppress-sound"_s, true}};
    auto message = callOfService(u"Notify"_s);
    message << u"Corvane"_s << replacesNone << desktopEntry << request.title << body
            << QStringList() << hints << expiresByDefault;
    QDBusConnection::sessionBus().asyncCall(message);
}
} // namespace

DBusNotificationCenter::DBusNotificationCenter(QString desktopEntry)
    : m_desktopEntry(std::move(desktopEntry))
{
}

void DBusNotificationCenter::getNotificationSettings(
    std::function<void(AuthorizationStatus)> completion)
{
    const auto decide = [completion](bool canReach) {
        completion(canReach ? AuthorizationStatus::authorized : AuthorizationStatus::denied);
    };
    call<bool>(callOfBus(u"NameHasOwner"_s) << service, [decide](std::optional<bool> hasOwner) {
        if (hasOwner.value_or(false)) {
            decide(true);
            return;
        }
        call<QStringList>(callOfBus(u"ListActivatableNames"_s),
                          [decide](const std::optional<QStringList> &names) {
                              decide(names && names->contains(service));
                          });
    });
}

void DBusNotificationCenter::requestAuthorization(unsigned,
                                                  std::function<void(bool isGranted)> completion)
{
    // Never undetermined, so there is nothing to grant.
    completion(false);
}

void DBusNotificationCenter::add(const NotificationRequest &request)
{
    call<QStringList>(
        callOfService(u"GetCapabilities"_s),
        [request, desktopEntry = m_desktopEntry](const std::optional<QStringList> &capabilities) {
            if (!capabilities)
                return;
            const bool isMarkup = capabilities->contains(u"body-markup"_s);
            notify(request, isMarkup ? request.body.toHtmlEscaped() : request.body, desktopEntry);
        });
}
