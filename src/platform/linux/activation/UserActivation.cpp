#include "platform/linux/activation/UserActivation.h"

#include "platform/linux/activation/ServerTime.h"
#include "platform/linux/activation/StartupNotification.h"
#include "platform/linux/base/Session.h"

void UserActivation::accept(const StartupTokens &tokens)
{
    if (const auto time = StartupNotification::userTime(tokens.startupId))
        happenedAt(*time);
    else
        happenedNow();
    activationToken = tokens.activationToken;
}

StartupTokens UserActivation::issueTokens()
{
    return {
        .startupId = x11Time ? StartupNotification::newId(*x11Time) : QByteArray(),
        .activationToken = std::exchange(activationToken, {}),
    };
}

void UserActivation::happenedAt(quint32 time)
{
    x11Time = time;
    activationToken.clear();
}

void UserActivation::happenedNow()
{
    // In a Wayland session, asking might start the X server.
    const auto session = sessionType(QProcessEnvironment::systemEnvironment());
    x11Time = session == SessionType::x11 ? currentServerTime() : std::nullopt;
    activationToken.clear();
}
