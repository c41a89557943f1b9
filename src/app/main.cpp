// Starts the program: hot keys are live before any of the GUI is built.

#include "app/CorvaneApp.h"
#include "hotkeys/HotkeyCenter.h"
#include "platform/linux/LinuxPlatform.h"
#include "platform/linux/activation/StartupNotification.h"
#include "platform/linux/base/ProcessSignals.h"
#include "platform/linux/instance/SingleInstance.h"
#include "store/ShortcutStore.h"

#include <QStandardPaths>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <optional>

using namespace Qt::StringLiterals;

namespace
{
void say(const QString &line)
{
    std::fprintf(stderr, "corvane: %s\n", qUtf8Printable(line));
}

InstanceHandlers instanceHandlers(LinuxPlatform &session, HotkeyCenter &center,
                                  AppDelegate &appDelegate)
{
    const auto nameOf = [](const QUuid &id) { return LaunchEntry{.id = id}.shortcutName(); };
    return {
        .activate = [&appDelegate] { appDelegate.openSettings(); },
        .isKnown = [&center, nameOf](
                       const QUuid &id) { return center.handlers.contains(nameOf(id).rawValue); },
        .fire = [&center, nameOf](const QUuid &id) { center.fire(nameOf(id)); },
        .keyRepeat = [&session] { return session.keyRepeat(); },
        .isRecording = [&session] { return session.isRecording(); },
    };
}

/// The exit status for the outcome of the claim; nothing if this instance is to run.
std::optional<int> endOfClaim(InstanceClaim claim)
{
    switch (claim) {
    case InstanceClaim::first:
        return std::nullopt;
    case InstanceClaim::handedOver:
        return EXIT_SUCCESS;
    case InstanceClaim::unanswered:
        say(u"it runs already, but does not answer"_s);
        return EXIT_FAILURE;
    case InstanceClaim::elsewhere:
        say(u"it runs already, in another session"_s);
        return EXIT_FAILURE;
    }
    Q_UNREACHABLE();
}
} // namespace

int main(int argc, char *argv[])
{
    const auto tokens = StartupTokens::takeFromEnvironment();
    // With SIGXFSZ ignored, writing beyond the file size limit fails instead of ending the program.
    std::signal(SIGXFSZ, SIG_IGN);
    // Install the handlers before the claim: after it, another start may send a signal.
    ProcessSignals signals;
    SingleInstance instance(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation)
                            + u"/Corvane/entries.json.lock"_s);
    // Skip the destructors: the bus's thread may still process a late reply, and needs what they
    // would destroy.
    if (const auto status = endOfClaim(instance.claim(tokens)))
        std::_Exit(*status);
    const auto platform = LinuxPlatform::make();
    if (!platform) {
        say(platform.error().description);
        return EXIT_FAILURE;
    }
    LinuxPlatform &session = **platform;
    if (const auto notice = session.hotkeysNotice())
        say(*notice);

    const Platform &services = session.services();
    HotkeyCenter center(services.hotkeys, services.userDefaults);
    HotkeyCenter::setShared(center);
    ShortcutStore store(services, center);
    ShortcutStore::setShared(store);
    session.flushHotkeys();

    CorvaneApp app(argc, argv, services, store);
    session.attachToEventLoop();
    signals.attachToEventLoop([&instance] { instance.handleSignal(); });
    instance.attachToEventLoop(session.userActivation(),
                               instanceHandlers(session, center, app.appDelegate));
    if (tokens != StartupTokens())
        session.userActivation().accept(tokens);
    app.appDelegate.applicationDidFinishLaunching();
    // If no window has appeared, nothing else tells the desktop that the start is complete.
    StartupNotification::finish(tokens.startupId);
    const int status = CorvaneApp::exec();
    session.end();
    // Skip the destructors: nothing needs closing, and a thread may still be playing an alert
    // sound.
    std::_Exit(status);
}
