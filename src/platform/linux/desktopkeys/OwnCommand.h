// Which of the desktop's shortcuts the user has made for our entries.
#pragma once

#include "platform/linux/base/ApplicationId.h"

/// Whether the command that a shortcut runs calls the program. Keys that work for an entry are no
/// reason to warn of them.
inline bool callsUs(const QString &command)
{
    return command.contains(applicationId);
}
