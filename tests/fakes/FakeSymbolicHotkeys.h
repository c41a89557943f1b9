// A desktop with the shortcuts that it is given, which counts how often it is asked for them.
#pragma once

#include "platform/SymbolicHotkeys.h"

class FakeSymbolicHotkeys : public SymbolicHotkeys
{
public:
    std::optional<QList<SymbolicHotkey>> copySymbolicHotkeys() override
    {
        ++copies;
        return hotkeys;
    }

    /// Nothing makes the call fail.
    std::optional<QList<SymbolicHotkey>> hotkeys = QList<SymbolicHotkey>();
    int copies = 0;
};
