#include "actions/Notifier.h"

#include "platform/Platform.h"
#include "platform/UserNotificationCenter.h"

#include <QUuid>

namespace Notifier
{

namespace
{
void deliver(UserNotificationCenter &center, const QString &title, const QString &body)
{
    // A unique identifier, so that no notification replaces another.
    center.add({QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper(), title, body});
}
} // namespace

void post(const QString &title, const QString &body, const Platform &platform)
{
    if (platform.bundleIdentifier.isEmpty())
        return;
    auto &center = platform.notifications;
    center.getNotificationSettings([&center, title, body](AuthorizationStatus status) {
        switch (status) {
        case AuthorizationStatus::authorized:
        case AuthorizationStatus::provisional:
            deliver(center, title, body);
            break;
        case AuthorizationStatus::notDetermined:
            center.requestAuthorization(alertOption, [&center, title, body](bool isGranted) {
                if (isGranted)
                    deliver(center, title, body);
            });
            break;
        case AuthorizationStatus::denied:
            break;
        }
    });
}

} // namespace Notifier
