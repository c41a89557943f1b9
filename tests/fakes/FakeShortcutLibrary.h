// A computer with the Shortcuts that it is given.
#pragma once

#include "platform/ShortcutLibrary.h"

class FakeShortcutLibrary : public ShortcutLibrary
{
public:
    QStringList names() override
    {
        ++timesRead;
        return shortcuts;
    }

    QStringList shortcuts;
    int timesRead = 0;
};
