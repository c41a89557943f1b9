#include "platform/linux/launch/DBusActivation.h"

#include "platform/linux/base/DBusCall.h"

#include <QDBusConnection>
#include <QDBusMessage>
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

    callAsynchronously(
        call, nullptr, [completion = std::move(completion)](const QDBusMessage &answer) {
            const bool isError = answer.type() == QDBusMessage::ErrorMessage;
            completion(isError ? std::optional(Error{answer.errorMessage()}) : std::nullopt);
        });
}

} // namespace DBusActivation
