// The Shortcuts on this computer that the user can choose from.
#pragma once

#include <QStringList>

class ShortcutLibrary
{
public:
    virtual ~ShortcutLibrary() = default;

    /// The runnable names, without duplicates, in natural order. Reads the disk.
    virtual QStringList names() = 0;
};
