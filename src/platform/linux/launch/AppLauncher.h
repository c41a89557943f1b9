// Starts applications: a program of their own, one in a terminal, or a message on the bus, as
// their .desktop files ask for.
#pragma once

#include "foundation/Result.h"
#include "platform/linux/UserActivation.h"
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
    /// The activation must outlive it.
    explicit AppLauncher(UserActivation &activation);

    /// Starts the application, with something to open if the target is not empty. The completion
    /// is called once, on the main thread, with the error if it could not be started.
    void launch(const DesktopApp &app, const QUrl &target,
                std::function<void(std::optional<Error>)> completion);

    /// Starts a program: its path, or a name to be found in PATH, and its arguments.
    std::optional<Error> launchProgram(const QStringList &command);

private:
    std::optional<Error> launchProgramOf(const DesktopApp &app, const QUrl &target);
    void release(pid_t child, const QString &app);

    UserActivation &m_activation;
    ChildReaper m_reaper;
};
