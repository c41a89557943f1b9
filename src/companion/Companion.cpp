#include "companion/Companion.h"

#include "companion/JournalStream.h"
#include "companion/ShortcutLink.h"
#include "foundation/Text.h"
#include "platform/linux/base/ApplicationId.h"
#include "platform/linux/base/SessionBus.h"
#include "platform/linux/base/StartupTokens.h"
#include "platform/linux/launch/AppLauncher.h"
#include "platform/linux/launch/DesktopApp.h"
#include "platform/linux/launch/Spawn.h"
#include "platform/linux/launch/SystemdScope.h"
#include "platform/linux/scripts/LinuxShortcutLibrary.h"
#include "platform/linux/services/DBusNotificationCenter.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QEventLoop>
#include <QTimer>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <memory>
#include <optional>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{
/// A working bus answers in less than a millisecond.
constexpr auto maxWaitForBus = 2s;
/// Long enough for the notification host to be started first, which takes about a second.
constexpr auto maxWaitForNotification = 5s;

struct Failure {
    QString title;
    QString reason;
};

void writeTo(int stream)
{
    for (const int output : {STDOUT_FILENO, STDERR_FILENO})
        dup2(stream, output);
    if (stream > STDERR_FILENO)
        close(stream);
}

/// Launches the application and waits for the outcome.
std::optional<Error> launch(const DesktopApp &app, const StartupTokens &tokens)
{
    // The application may be started over D-Bus.
    avoidHangingSessionBus();
    AppLauncher launcher;
    std::optional<std::optional<Error>> outcome;
    QEventLoop loop;
    launcher.launch(app, {}, tokens, [&outcome, &loop](const std::optional<Error> &error) {
        outcome = error;
        loop.quit();
    });
    if (!outcome)
        loop.exec();
    return *outcome;
}

std::optional<Error> runScript(const QString &path, const StartupTokens &tokens)
{
    const auto child = spawn({{path}, {}, tokens});
    if (!child)
        return child.error();
    // Connect only after the start, so that a hanging bus does not delay the script.
    avoidHangingSessionBus();
    moveToScopeOfItsOwn(*child, path.section(u'/', -1));
    return std::nullopt;
}

/// Waits until the session bus has received what was sent; unsent messages would be lost when the
/// program exits.
void awaitBus()
{
    const auto ping =
        QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s,
                                       u"org.freedesktop.DBus.Peer"_s, u"Ping"_s);
    QDBusConnection::sessionBus().call(ping, QDBus::Block,
                                       int(std::chrono::milliseconds(maxWaitForBus).count()));
}

std::optional<Error> start(const QString &path, const StartupTokens &tokens)
{
    const auto app = path.endsWith(u".desktop"_s) ? DesktopApp::fromFile(path) : std::nullopt;
    const auto error = app ? launch(*app, tokens) : runScript(path, tokens);
    if (!error)
        awaitBus();
    return error;
}

/// Starts the Shortcut and returns the failure, if any. From the start on, the program's own output
/// goes where the Shortcut's does.
std::optional<Failure> run(const QByteArray &link, const StartupTokens &tokens,
                           const QString &journalSocket)
{
    const auto name = shortcutName(link);
    if (!name)
        return Failure{u"The Shortcut could not run"_s, name.error().description};
    const auto failure = [&name](const Error &error) {
        return Failure{u"%1 could not run"_s.arg(quoted(shortened(onOneLine(*name)))),
                       error.description};
    };
    const auto path = LinuxShortcutLibrary::find(*name);
    if (!path)
        return failure(path.error());
    writeTo(openJournalStream(journalSocket, *name));
    const auto error = start(*path, tokens);
    return error ? std::optional(failure(*error)) : std::nullopt;
}

/// Returns when the desktop has accepted the notification, or after a short wait if it does not
/// answer.
void notify(const Failure &failure)
{
    avoidHangingSessionBus();
    DBusNotificationCenter center(applicationId, {});
    // The callback shares ownership of the loop, since the answer may come after this function has
    // returned.
    const auto loop = std::make_shared<QEventLoop>();
    QTimer::singleShot(maxWaitForNotification, loop.get(), &QEventLoop::quit);
    center.add({.title = failure.title, .body = failure.reason}, [loop] { loop->quit(); });
    loop->exec();
}
} // namespace

int companionMain(int argc, char *argv[], const QString &journalSocket)
{
    const auto tokens = StartupTokens::takeFromEnvironment();
    // For this program's own messages; started programs do not inherit it.
    const int errors = fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    if (argc < 2) {
        dprintf(errors, "usage: corvane-shortcuts shortcuts://run-shortcut?name=NAME\n");
        return EXIT_FAILURE;
    }
    const QByteArray link(argv[1]);
    const bool isAlone = argc == 2;
    const QCoreApplication app(argc, argv);
    const auto failure = isAlone
        ? run(link, tokens, journalSocket)
        : Failure{u"The Shortcut could not run"_s, u"More than one link was given."_s};
    if (!failure)
        return EXIT_SUCCESS;
    dprintf(errors, "corvane-shortcuts: %s: %s\n", qUtf8Printable(failure->title),
            qUtf8Printable(failure->reason));
    notify(*failure);
    return EXIT_FAILURE;
}
