// Explains to the user why the system does not start a program.
#pragma once

#include "foundation/Result.h"

#include <QString>

/// The error for a missing program, given by its path or name.
Error notInstalled(const QString &program);

/// The error for an error number of execve. The path is that of the file; the name is what the user
/// knows it by.
Error execError(int number, const QString &path, const QString &name);
