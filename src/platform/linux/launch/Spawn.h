// Starts a program the way a desktop does: fully detached from us.
#pragma once

#include "foundation/Result.h"
#include "platform/linux/base/StartupTokens.h"

#include <QString>
#include <QStringList>
#include <sys/types.h>

struct SpawnRequest {
    /// The program (a path, or a name to be found in PATH) and its arguments.
    QStringList arguments;
    /// Empty for the home folder, or for the root folder if there is no home.
    QString workingFolder;
    /// The tokens that bring the program's first window to the front; our own are not inherited.
    StartupTokens tokens;
};

/// Starts a program in its own session, with default signal handling, empty input, our standard
/// output and error, and none of our other descriptors. No shell is involved. Returns the child's
/// process id; the caller reaps it.
Result<pid_t> spawn(const SpawnRequest &request);

/// Resets all signals to their default handling; for a child that is about to execute a program.
void resetSignals();
