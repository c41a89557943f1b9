#include "platform/linux/launch/DBusActivation.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QStringList>
#include <QVariantMap>
#include <gio/gio.h>

using namespace Qt::StringLiterals;

namespace
{
QString objectPath(const QString &app)
{
    QString path = u'/' + app;
    return path.replace(u'.', u'/').replace(u'-', u'_');
}
} // namespace

namespace DBusActivation
{

bool isPossible(const QString &app)
{
    return g_dbus_is_name(app.toUtf8().constData()) && QDBusConnection::sessionBus().isConnected();
}

void open(const QString &app, const QUrl &target, const StartupTokens &tokens,
          std::function<void(std::optional<Error>)> completion)
{
    auto call =
        QDBusMessage::createMethodCall(app, objectPath(app), u"org.freedesktop.Application"_s,
                                       target.isEmpty() ? u"Activate"_s : u"Open"_s);
    if (!target.isEmpty())
        call << QStringList(target.toString(QUrl::FullyEncoded));
    call << tokens.toPlatformData();

    auto *const answer = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(call));
    QObject::connect(answer, &QDBusPendingCallWatcher::finished, answer,
                     [answer, completion = std::move(completion)] {
                         answer->deleteLater();
                         const QDBusPendingReply<> reply = *answer;
                         completion(reply.isError() ? std::optional(Error{reply.error().message()})
                                                    : std::nullopt);
                     });
}

} // namespace DBusActivation
