// A unit of systemd's own for a started program, so that the end of ours is not its end.
#pragma once

#include <QString>
#include <sys/types.h>

/// Moves the process, later and in silence, if systemd runs the session; what the process itself
/// has started until then stays with us. The app is the name of
/// its .desktop file without the suffix, or of its program.
void moveToScopeOfItsOwn(pid_t process, const QString &app);
