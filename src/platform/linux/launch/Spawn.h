// Starts a program, the way a desktop starts one: free of us in every respect.
#pragma once

#include "foundation/Result.h"
#include "platform/linux/base/StartupTokens.h"

#include <QString>
#include <QStringList>
#include <sys/types.h>

struct SpawnRequest {
    /// The program, a path or a name to be found in PATH, and what it is given.
    QStringList arguments;
    /// Empty for the home folder, or the root folder where there is no home.
    QString workingFolder;
    /// By which the program's first window comes to the front; none of ours are handed on.
    StartupTokens tokens;
};

/// Starts a program in a session of its own, with default signals, nothing to read, our output and
/// error, and none of our other descriptors. No shell is involved. The child's process id; the
/// caller reaps it.
Result<pid_t> spawn(const SpawnRequest &request);

/// Gives all signals their default handling; for a child that is about to become a program.
void resetSignals();
