// The user's latest action, on whose behalf a started program may come to the front.
#pragma once

#include <QByteArray>
#include <QtGlobal>
#include <optional>

/// What one program hands to another, so that it may come to the front; empty where there is none.
struct StartupTokens {
    /// Of X11, and of desktops that show that a program is starting.
    QByteArray startupId;
    /// Of Wayland.
    QByteArray activationToken;

    bool operator==(const StartupTokens &) const = default;

    /// What the program was started with. It is good for one use, so that nobody else finds it
    /// there afterwards. Before there are threads.
    static StartupTokens takeFromEnvironment();
};

struct UserActivation {
    /// When it was, in the X server's time; nothing before the first one, or without an X server.
    std::optional<quint32> x11Time;
    /// What the Wayland compositor gave for it; often empty.
    QByteArray activationToken;

    bool operator==(const UserActivation &) const = default;

    /// The user acted in another program, which hands over its tokens.
    void handedOver(const StartupTokens &tokens);

    /// The user acted a moment ago, and nothing tells more. Asks the X server for its time.
    void happenedNow();
};
