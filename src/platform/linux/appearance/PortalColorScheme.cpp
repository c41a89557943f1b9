#include "platform/linux/appearance/PortalColorScheme.h"

#include "platform/linux/base/DBusCall.h"

#include <QDBusConnection>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <utility>

using namespace Qt::StringLiterals;

namespace
{
const QString portalService = u"org.freedesktop.portal.Desktop"_s;
const QString portalPath = u"/org/freedesktop/portal/desktop"_s;
const QString portalInterface = u"org.freedesktop.portal.Settings"_s;
const QString appearanceGroup = u"org.freedesktop.appearance"_s;
const QString colorSchemeKey = u"color-scheme"_s;

std::optional<bool> meansDark(const QVariant &value)
{
    if (value.metaType() != QMetaType::fromType<uint>())
        return {};
    switch (value.toUInt()) {
    case 1:
        return true;
    case 2:
        return false;
    default:
        return {};
    }
}
} // namespace

void PortalColorScheme::start()
{
    auto bus = QDBusConnection::sessionBus();
    auto *const owner =
        new QDBusServiceWatcher(portalService, bus, QDBusServiceWatcher::WatchForOwnerChange, this);
    connect(owner, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString &, const QString &, const QString &newOwner) {
                if (!newOwner.isEmpty())
                    read();
            });
    // Subscribe to this setting only, so that others do not wake us. Accept any sender: given a
    // name, Qt would block to ask the bus for its owner.
    bus.connect(QString(), portalPath, portalInterface, u"SettingChanged"_s,
                {appearanceGroup, colorSchemeKey}, QString(), this,
                SLOT(settingChanged(QDBusMessage)));
    read();
}

void PortalColorScheme::read()
{
    // Portals before 1.17 lack ReadOne.
    auto message =
        QDBusMessage::createMethodCall(portalService, portalPath, portalInterface, u"Read"_s);
    // A desktop that uses portals has already started one, or will.
    message.setAutoStartService(false);
    message << appearanceGroup << colorSchemeKey;
    m_reading = std::make_unique<QObject>();
    callAsynchronously(message, m_reading.get(), [this](const QDBusMessage &answer) {
        const QDBusPendingReply<QDBusVariant> value(answer);
        take(value.isValid() ? value.value().variant() : QVariant());
    });
}

void PortalColorScheme::settingChanged(const QDBusMessage &change)
{
    // The pending answer is older than this change.
    m_reading.reset();
    take(change.arguments().value(2));
}

void PortalColorScheme::take(QVariant value)
{
    // Read wraps the value twice, SettingChanged once.
    if (value.metaType() == QMetaType::fromType<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    const auto prefersDark = meansDark(value);
    if (std::exchange(m_prefersDark, prefersDark) != prefersDark)
        Q_EMIT changed();
}
