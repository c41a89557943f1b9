// The Shortcuts in the folders of the user and of the system: executable files and launchers.
#pragma once

#include "foundation/Result.h"
#include "platform/ShortcutLibrary.h"

#include <QString>

class LinuxShortcutLibrary : public ShortcutLibrary
{
public:
    QStringList names() override;

    /// Not with a slash or two full stops in a row, so that a name never leads out of the folders,
    /// nor with control characters or what turns the direction of a text.
    static bool canBeName(const QString &text);

    /// The file that runs under that name: its whole name, or that without its extension. The
    /// first folder that has such a file decides, and there, a file of exactly that name; those
    /// that may be executed, and launchers, go before others. The error says why none is run.
    static Result<QString> find(const QString &name);
};
