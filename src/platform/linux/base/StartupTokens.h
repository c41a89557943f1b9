// What one program hands to another, so that the other may come to the front.
#pragma once

#include <QByteArray>
#include <QVariantMap>

/// Each is good for one use, and empty where there is none.
struct StartupTokens {
    /// Of X11, and of desktops that show that a program is starting.
    QByteArray startupId;
    /// Of Wayland.
    QByteArray activationToken;

    bool operator==(const StartupTokens &) const = default;

    /// What the program was started with, so that nobody else finds it there afterwards. Before
    /// there are threads.
    static StartupTokens takeFromEnvironment();

    /// As calls of org.freedesktop.Application hand them over.
    QVariantMap toPlatformData() const;
    static StartupTokens fromPlatformData(const QVariantMap &data);
};
