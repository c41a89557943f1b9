// The user's latest action, on whose behalf a started program may come to the front.
#pragma once

#include "platform/linux/base/StartupTokens.h"

#include <QByteArray>
#include <QtGlobal>
#include <optional>

struct UserActivation {
    /// When it was, in the X server's time; nothing before the first one, or without an X server.
    std::optional<quint32> x11Time;
    /// What the Wayland compositor gave for it; often empty.
    QByteArray activationToken;

    bool operator==(const UserActivation &) const = default;

    /// The user acted in another program, which hands over its tokens.
    void accept(const StartupTokens &tokens);

    /// Fresh ones for a program that is started on behalf of the action.
    StartupTokens issueTokens();

    /// The user pressed a key at that time of the X server.
    void happenedAt(quint32 time);

    /// The user acted a moment ago, and nothing tells more. Asks the X server for its time.
    void happenedNow();
};
