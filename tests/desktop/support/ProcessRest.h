// Whether a process leaves the machine alone.
#pragma once

#include <QtGlobal>
#include <sys/types.h>

/// Awaits that none of its threads runs any more.
void awaitRest(pid_t process);

/// Watches it for that long: whether none of its threads has run.
bool isAtRestFor(pid_t process, int milliseconds);

/// Memory that nobody else uses and that is not in a file.
qint64 ownKilobytes(pid_t process);
