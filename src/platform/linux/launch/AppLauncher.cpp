#include "platform/linux/launch/AppLauncher.h"

#include "platform/linux/launch/DBusActivation.h"
#include "platform/linux/launch/DesktopApp.h"
#include "platform/linux/launch/ExecLine.h"
#include "platform/linux/launch/Spawn.h"
#include "platform/linux/launch/SystemdScope.h"
#include "platform/linux/launch/TerminalLaunch.h"

using namespace Qt::StringLiterals;

namespace
{
QString withoutSuffix(const QString &desktopFileName)
{
    return desktopFileName.chopped(QLatin1StringView(".desktop").size());
}
} // namespace

AppLauncher::AppLauncher(Announce announce)
    : m_announce(std::move(announce))
{
}

void AppLauncher::launch(const DesktopApp &app, const QUrl &target, const StartupTokens &tokens,
                         std::function<void(std::optional<Error>)> completion)
{
    if (app.isTrue("DBusActivatable") && DBusActivation::isPossible(withoutSuffix(app.id())))
        DBusActivation::open(withoutSuffix(app.id()), target, tokens, std::move(completion));
    else
        completion(launchProgramOf(app, target, tokens));
}

std::optional<Error> AppLauncher::launchProgramOf(const DesktopApp &app, const QUrl &target,
                                                  const StartupTokens &tokens)
{
    const auto child = app.isTrue("Terminal") ? launchInTerminal(app, target, tokens)
                                              : launchExecLine(app, target, tokens);
    if (!child)
        return child.error();
    release(*child, withoutSuffix(app.id()));
    return std::nullopt;
}

Result<pid_t> AppLauncher::launchExecLine(const DesktopApp &app, const QUrl &target,
                                          const StartupTokens &tokens)
{
    const auto arguments = parseExecLine(app.text("Exec"),
                                         {.name = app.name(),
                                          .icon = app.text("Icon"),
                                          .desktopFile = app.file(),
                                          .target = target});
    if (!arguments)
        return arguments.error();
    auto child = spawn({*arguments, app.text("Path"), tokens});
    if (child)
        announce(app, arguments->constFirst(), tokens.startupId);
    return child;
}

void AppLauncher::announce(const DesktopApp &app, const QString &program,
                           const QByteArray &startupId)
{
    if (!m_announce || startupId.isEmpty() || !app.isTrue("StartupNotify"))
        return;
    m_announce(startupId,
               {.name = app.name(),
                .icon = app.text("Icon"),
                .program = program.section(u'/', -1),
                .windowClass = app.text("StartupWMClass")});
}

std::optional<Error> AppLauncher::launchProgram(const QStringList &command,
                                                const StartupTokens &tokens)
{
    const auto child = spawn({command, {}, tokens});
    if (!child)
        return child.error();
    release(*child, command.constFirst().section(u'/', -1));
    return std::nullopt;
}

void AppLauncher::release(pid_t child, const QString &app)
{
    m_reaper.reapWhenEnded(child);
    moveToScopeOfItsOwn(child, app);
}
