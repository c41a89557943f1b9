// The Shortcuts in the folders of the user and of the system: executable files and launchers.
#pragma once

#include "foundation/Result.h"
#include "platform/ShortcutLibrary.h"

#include <QString>

class LinuxShortcutLibrary : public ShortcutLibrary
{
public:
    QStringList names() override;
    Result<QString> create(const QString &name) override;
    Result<QString> folder() override;

    /// False for a slash or two full stops in a row, so that a name never leads out of the folders,
    /// and for control characters and those that change the direction of text.
    static bool canBeName(const QString &text);

    /// The file that runs under that name, which is its full name or the name without its
    /// extension. The first folder with such a file decides. Within it, executables and launchers
    /// go before others, and among those a file of exactly that name. The error says why none is
    /// run.
    static Result<QString> find(const QString &name);
};
