// Starts a program, the way a desktop starts one: free of us in every respect.
#pragma once

#include "foundation/Result.h"

#include <QString>
#include <QStringList>
#include <sys/types.h>

/// Starts arguments[0], a path or a name to be found in PATH, in a session of its own, with
/// default signals, nothing to read, our output and error, and none of our other descriptors.
/// No shell is involved. The child's process id; the caller reaps it.
Result<pid_t> spawn(const QStringList &arguments, const QString &workingFolder);
