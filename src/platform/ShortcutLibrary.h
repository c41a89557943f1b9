// The Shortcuts on this computer, for the user to choose from.
#pragma once

#include <QStringList>

class ShortcutLibrary
{
public:
    virtual ~ShortcutLibrary() = default;

    /// The names that run something, each once, as people sort them. Reads the disk.
    virtual QStringList names() = 0;
};
