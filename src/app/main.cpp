// The program's start: hot keys are live before anything of the GUI is built.

#include "model/ShortcutStore.h"
#include "platform/linux/LinuxPlatform.h"
#include "platform/linux/TerminationSignals.h"

#include <QApplication>
#include <cstdio>
#include <cstdlib>

namespace
{
void say(const QString &line)
{
    std::fprintf(stderr, "corvane: %s\n", qUtf8Printable(line));
}
} // namespace

int main(int argc, char *argv[])
{
    TerminationSignals terminationSignals;
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
    const int status = QApplication::exec();
    // Nothing needs closing, and an alert sound may still be under way in a thread.
    std::_Exit(status);
}
