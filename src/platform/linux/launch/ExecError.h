// Says in words for the user why the system does not start a program.
#pragma once

#include "foundation/Result.h"

#include <QString>

/// Of a program that was not found, by its path or its name.
Error notInstalled(const QString &program);

/// Of execve's error number for the file at that path, which the user knows by that path or name.
Error execError(int number, const QString &path, const QString &name);
