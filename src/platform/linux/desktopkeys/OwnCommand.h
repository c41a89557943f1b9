// Recognises desktop shortcuts that the user has made for our entries.
#pragma once

#include "platform/linux/base/ApplicationId.h"

/// Whether the command of a shortcut calls the program. Such keys already work for an entry, so
/// they need no warning.
inline bool callsUs(const QString &command)
{
    return command.contains(applicationId);
}
