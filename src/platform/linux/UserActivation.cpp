#include "platform/linux/UserActivation.h"

#include "platform/linux/Session.h"
#include "platform/linux/x11/ServerTime.h"
#include "platform/linux/x11/StartupNotification.h"

StartupTokens StartupTokens::takeFromEnvironment()
{
    const StartupTokens tokens{
        .startupId = qgetenv("DESKTOP_STARTUP_ID"),
        .activationToken = qgetenv("XDG_ACTIVATION_TOKEN"),
    };
    qunsetenv("DESKTOP_STARTUP_ID");
    qunsetenv("XDG_ACTIVATION_TOKEN");
    return tokens;
}

void UserActivation::handedOver(const StartupTokens &tokens)
{
    const auto time = StartupNotification::userTime(tokens.startupId);
    if (time)
        x11Time = time;
    else
        happenedNow();
    activationToken = tokens.activationToken;
}

void UserActivation::happenedNow()
{
    // Not of a Wayland session's X server, which may be started only by being asked.
    const auto session = sessionType(QProcessEnvironment::systemEnvironment());
    x11Time = session == SessionType::x11 ? currentServerTime() : std::nullopt;
    activationToken.clear();
}
