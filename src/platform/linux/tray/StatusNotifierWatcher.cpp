#include "platform/linux/tray/StatusNotifierWatcher.h"

#include "platform/linux/base/DBusCall.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingReply>
#include <optional>

using namespace Qt::StringLiterals;

namespace
{
const QString watcherService = u"org.kde.StatusNotifierWatcher"_s;
const QString watcherPath = u"/StatusNotifierWatcher"_s;

QDBusMessage call(const QString &interface, const QString &method)
{
    auto message = QDBusMessage::createMethodCall(watcherService, watcherPath, interface, method);
    // Only a desktop whose watcher already runs has a place for items.
    message.setAutoStartService(false);
    return message;
}

/// Reads the host's state from the answer; nothing if the watcher hangs, because it may have hosts.
std::optional<NotifierHost> hostFrom(const QDBusPendingReply<QDBusVariant> &answer)
{
    if (answer.isValid())
        return answer.value().variant().toBool() ? NotifierHost::present : NotifierHost::awaited;
    if (answer.error().type() == QDBusError::NoReply)
        return std::nullopt;
    return NotifierHost::absent;
}
} // namespace

StatusNotifierWatcher::StatusNotifierWatcher()
    : m_owner(watcherService, QDBusConnection::sessionBus(),
              QDBusServiceWatcher::WatchForOwnerChange)
{
}

void StatusNotifierWatcher::start()
{
    connect(&m_owner, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString &, const QString &, const QString &newOwner) {
                if (!newOwner.isEmpty())
                    registerItem();
                askForHost();
            });
    auto bus = QDBusConnection::sessionBus();
    // Accepts any sender: given a name, Qt would block to ask the bus for its owner.
    for (const QString &signal :
         {u"StatusNotifierHostRegistered"_s, u"StatusNotifierHostUnregistered"_s})
        bus.connect(QString(), watcherPath, watcherService, signal, this, SLOT(askForHost()));
    registerItem();
    askForHost();
}

void StatusNotifierWatcher::registerItem()
{
    auto bus = QDBusConnection::sessionBus();
    bus.send(call(watcherService, u"RegisterStatusNotifierItem"_s) << bus.baseService());
}

void StatusNotifierWatcher::askForHost()
{
    const auto message = call(u"org.freedesktop.DBus.Properties"_s, u"Get"_s)
        << watcherService << u"IsStatusNotifierHostRegistered"_s;
    callAsynchronously(message, this, [this](const QDBusMessage &answer) {
        if (const auto host = hostFrom(answer))
            Q_EMIT hostChanged(*host);
    });
}
