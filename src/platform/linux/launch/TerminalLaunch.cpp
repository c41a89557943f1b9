#include "platform/linux/launch/TerminalLaunch.h"

#include "platform/linux/base/SessionBus.h"
#include "platform/linux/launch/DesktopApp.h"
#include "platform/linux/launch/GLib.h"
#include "platform/linux/launch/Spawn.h"

#include <unistd.h>

namespace
{
using LaunchContext = GObjectPointer<GAppLaunchContext>;

/// Sets a variable; an empty value unsets it.
void set(const LaunchContext &context, const char *variable, const QByteArray &value)
{
    if (value.isEmpty())
        g_app_launch_context_unsetenv(context.get(), variable);
    else
        g_app_launch_context_setenv(context.get(), variable, value.constData());
}

LaunchContext contextWith(const StartupTokens &tokens)
{
    LaunchContext context(g_app_launch_context_new());
    set(context, "DBUS_SESSION_BUS_ADDRESS", sessionBusAddressForPrograms());
    set(context, "DESKTOP_STARTUP_ID", tokens.startupId);
    set(context, "XDG_ACTIVATION_TOKEN", tokens.activationToken);
    return context;
}

/// Data passed to the child, and its process id.
struct Child {
    /// Null if GIO enters the folder that the file names.
    const char *home;
    pid_t process = 0;
};

/// Runs in the child before it becomes the terminal.
void prepare(gpointer data)
{
    const auto *const child = static_cast<Child *>(data);
    resetSignals();
    setsid();
    [[maybe_unused]] const bool isThere =
        !child->home || chdir(child->home) == 0 || chdir("/") == 0;
}

void note(GDesktopAppInfo *, GPid process, gpointer data)
{
    static_cast<Child *>(data)->process = process;
}
} // namespace

Result<pid_t> launchInTerminal(const DesktopApp &app, const QUrl &target,
                               const StartupTokens &tokens)
{
    const LaunchContext context = contextWith(tokens);
    const QByteArray home = qgetenv("HOME");
    Child child{app.text("Path").isEmpty() ? home.constData() : nullptr};
    QByteArray address = target.toEncoded();
    GList addresses{address.data(), nullptr, nullptr};
    GError *error = nullptr;
    g_desktop_app_info_launch_uris_as_manager(
        app.get(), target.isEmpty() ? nullptr : &addresses, context.get(),
        GSpawnFlags(G_SPAWN_SEARCH_PATH | G_SPAWN_DO_NOT_REAP_CHILD), prepare, &child, note, &child,
        &error);
    if (error)
        return takeError(error);
    return child.process;
}
