// The Shortcuts on this computer that the user can choose from.
#pragma once

#include "foundation/Result.h"

#include <QString>
#include <QStringList>

class ShortcutLibrary
{
public:
    virtual ~ShortcutLibrary() = default;

    /// The runnable names, without duplicates, in natural order. Reads the disk.
    virtual QStringList names() = 0;

    /// Makes a Shortcut of that name: a script that does nothing yet. Returns the script's path. It
    /// is an error if the name cannot be used, if a Shortcut or file has it already, or if the new
    /// Shortcut would not run; then nothing is made.
    virtual Result<QString> create(const QString &name) = 0;

    /// The path of the user's own folder of Shortcuts, which is made if it is missing.
    virtual Result<QString> folder() = 0;
};
