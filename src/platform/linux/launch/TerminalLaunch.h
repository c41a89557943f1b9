// Starts an application in a terminal.
#pragma once

#include "foundation/Result.h"
#include "platform/linux/base/StartupTokens.h"

#include <QUrl>
#include <sys/types.h>

class DesktopApp;

/// Like spawn(), but GIO finds the terminal: it knows those of all desktops and how to pass each
/// the command. GIO also announces the start on the session bus, over its own connection, and
/// blocks for that. Returns the child's process id; the caller reaps it.
Result<pid_t> launchInTerminal(const DesktopApp &app, const QUrl &target,
                               const StartupTokens &tokens);
