// The user's latest action, which entitles a started program to come to the front.
#pragma once

#include "platform/linux/base/StartupTokens.h"

#include <QByteArray>
#include <QtGlobal>
#include <optional>

struct UserActivation {
    /// The X server time of the action; nothing before the first action or without an X server.
    std::optional<quint32> x11Time;
    /// The token that the Wayland compositor gave for the action; often empty.
    QByteArray activationToken;

    bool operator==(const UserActivation &) const = default;

    /// Adopts the tokens of another program, in which the user acted.
    void accept(const StartupTokens &tokens);

    /// Makes tokens for a program that is started on behalf of the action.
    StartupTokens issueTokens();

    /// Notes a key press at that X server time.
    void happenedAt(quint32 time);

    /// Notes an action a moment ago of which nothing more is known. Asks the X server for its time.
    void happenedNow();
};
