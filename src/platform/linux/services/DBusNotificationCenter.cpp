#include "platform/linux/services/DBusNotificationCenter.h"

#include "platform/linux/base/DBusCall.h"

#include <QDBusMessage>
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

/// Calls asynchronously; the value is nothing if the answer is an error.
template <typename Value>
void call(const QDBusMessage &message, std::function<void(std::optional<Value>)> completion)
{
    const auto convert = [completion = std::move(completion)](const QDBusMessage &answer) {
        const QDBusPendingReply<Value> reply(answer);
        completion(reply.isError() ? std::nullopt : std::optional(reply.value()));
    };
    callAsynchronously(message, nullptr, convert);
}

QDBusMessage notification(const QString &title, const QString &body, const QString &icon,
                          const QString &desktopEntry)
{
    constexpr uint replacesNone = 0;
    constexpr int expiresByDefault = -1;
    QVariantMap hints{{u"suppress-sound"_s, true}};
    if (!desktopEntry.isEmpty())
        hints.insert(u"desktop-entry"_s, desktopEntry);
    return callOfService(u"Notify"_s) << u"Corvane"_s << replacesNone << icon << title << body
                                      << QStringList() << hints << expiresByDefault;
}
} // namespace

DBusNotificationCenter::DBusNotificationCenter(QString icon, QString desktopEntry)
    : m_icon(std::move(icon))
    , m_desktopEntry(std::move(desktopEntry))
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
    // The status is never undetermined, so there is nothing to grant.
    completion(false);
}

void DBusNotificationCenter::add(const NotificationRequest &request)
{
    add(request, [] {});
}

void DBusNotificationCenter::add(const NotificationRequest &request,
                                 std::function<void()> completion)
{
    const auto post = [request, completion = std::move(completion), icon = m_icon,
                       desktopEntry =
                           m_desktopEntry](const std::optional<QStringList> &capabilities) {
        if (!capabilities) {
            completion();
            return;
        }
        const bool isMarkup = capabilities->contains(u"body-markup"_s);
        const QString body = isMarkup ? request.body.toHtmlEscaped() : request.body;
        call<uint>(notification(request.title, body, icon, desktopEntry),
                   [completion](std::optional<uint>) { completion(); });
    };
    call<QStringList>(callOfService(u"GetCapabilities"_s), post);
}
