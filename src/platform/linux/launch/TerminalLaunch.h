// Starts an application that needs a terminal around it.
#pragma once

#include "foundation/Result.h"
#include "platform/linux/base/StartupTokens.h"

#include <QUrl>
#include <sys/types.h>

class DesktopApp;

/// As spawn(), but that GIO finds the terminal: it knows those of all desktops, and how each is
/// told what to run. It also tells the session bus of the start, over a connection of its own, for
/// which it waits. The child's process id; the caller reaps it.
Result<pid_t> launchInTerminal(const DesktopApp &app, const QUrl &target,
                               const StartupTokens &tokens);
