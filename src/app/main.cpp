// The program's start: hot keys are live before anything of the GUI is built.

#include "hotkeys/HotkeyCenter.h"
#include "model/ShortcutStore.h"
#include "platform/linux/LinuxPlatform.h"
#include "platform/linux/TerminationSignals.h"
#include "platform/linux/instance/SingleInstance.h"
#include "platform/linux/x11/StartupNotification.h"

#include <QApplication>
#include <cstdio>
#include <cstdlib>

using namespace Qt::StringLiterals;

namespace
{
void say(const QString &line)
{
    std::fprintf(stderr, "corvane: %s\n", qUtf8Printable(line));
}

bool fire(const QUuid &id)
{
    return HotkeyCenter::shared().fire(LaunchEntry{.id = id}.shortcutName());
}
} // namespace

int main(int argc, char *argv[])
{
    const auto tokens = StartupTokens::takeFromEnvironment();
    TerminationSignals terminationSignals;
    SingleInstance instance;
    switch (instance.claim(tokens)) {
    case InstanceClaim::first:
        break;
    case InstanceClaim::handedOver:
        return EXIT_SUCCESS;
    case InstanceClaim::unanswered:
        say(u"it runs already, but does not answer"_s);
        return EXIT_FAILURE;
    case InstanceClaim::impossible:
        say(u"without a session bus and a folder for a lock file it may run more than once"_s);
        break;
    }

    const auto &platform = LinuxPlatform::shared();
    if (!platform) {
        say(platform.error().description);
        return EXIT_FAILURE;
    }
    LinuxPlatform &session = **platform;
    if (const auto notice = session.hotkeysNotice())
        say(*notice);

    const ShortcutStore &store = ShortcutStore::shared();
    session.flushHotkeys();
    if (const auto &error = store.error())
        say(error->message + u' ' + error->details);

    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    session.attachToEventLoop();
    terminationSignals.attachToEventLoop();
    // TODO: open the settings window.
    instance.attachToEventLoop(session.userActivation(), {.activate = [] {}, .fire = fire});
    // Nothing comes on the screen that would tell the desktop that we are there.
    StartupNotification::finish(tokens.startupId);
    const int status = QApplication::exec();
    // Nothing needs closing, and an alert sound may still be under way in a thread.
    std::_Exit(status);
}
