// Starts applications as their .desktop files ask for: as a program, in a terminal, or by a message
// on the bus.
#pragma once

#include "foundation/Result.h"
#include "platform/linux/activation/StartupNotification.h"
#include "platform/linux/base/StartupTokens.h"
#include "platform/linux/launch/ChildReaper.h"

#include <QString>
#include <QStringList>
#include <QUrl>
#include <functional>
#include <optional>

class DesktopApp;

class AppLauncher
{
public:
    /// Tells the desktop that an application is starting with that startup id.
    using Announce = std::function<void(const QByteArray &startupId, const StartingApp &app)>;

    /// Without an announcement, the desktop does not show that an application is starting.
    explicit AppLauncher(Announce announce = {});

    /// Starts the application, and has it open the target unless that is empty. The completion is
    /// called once, on the main thread, with the error if the application could not be started.
    void launch(const DesktopApp &app, const QUrl &target, const StartupTokens &tokens,
                std::function<void(std::optional<Error>)> completion);

    /// Starts a program. The command is its path, or a name to be found in PATH, and its arguments.
    std::optional<Error> launchProgram(const QStringList &command, const StartupTokens &tokens);

private:
    std::optional<Error> launchProgramOf(const DesktopApp &app, const QUrl &target,
                                         const StartupTokens &tokens);
    Result<pid_t> launchExecLine(const DesktopApp &app, const QUrl &target,
                                 const StartupTokens &tokens);
    void announce(const DesktopApp &app, const QString &program, const QByteArray &startupId);
    void release(pid_t child, const QString &app);

    Announce m_announce;
    ChildReaper m_reaper;
};
