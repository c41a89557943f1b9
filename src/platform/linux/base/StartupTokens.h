// Tokens that one program passes to another so that the other may come to the front.
#pragma once

#include <QByteArray>
#include <QVariantMap>

/// Each token is valid for one use and empty if there is none.
struct StartupTokens {
    /// Used on X11 and by desktops that show that a program is starting.
    QByteArray startupId;
    /// Used on Wayland.
    QByteArray activationToken;

    bool operator==(const StartupTokens &) const = default;

    /// Takes the tokens that the program was started with and removes them from the environment, so
    /// that child processes do not inherit them. To be called before threads exist.
    static StartupTokens takeFromEnvironment();

    /// Converts to the platform data of org.freedesktop.Application calls.
    QVariantMap toPlatformData() const;
    static StartupTokens fromPlatformData(const QVariantMap &data);
};
