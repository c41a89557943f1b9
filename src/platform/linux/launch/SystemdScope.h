// Puts a started program into its own systemd scope, so that it survives the end of our unit.
#pragma once

#include <QString>
#include <sys/types.h>

/// Moves the process asynchronously, and ignores failures, if systemd runs the session. Children
/// that the process has started by then stay in our unit. The app is the name of its .desktop file
/// without the suffix, or of its program.
void moveToScopeOfItsOwn(pid_t process, const QString &app);
