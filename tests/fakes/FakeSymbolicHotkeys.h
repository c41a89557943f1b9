// A desktop with the shortcuts that it is given, which counts how often it is asked for them, and
// other programs with the keys that they are given.
#pragma once

#include "platform/SymbolicHotkeys.h"

#include <QSet>
#include <utility>

class FakeSymbolicHotkeys : public SymbolicHotkeys
{
public:
    std::optional<QList<SymbolicHotkey>> copySymbolicHotkeys() override
    {
        ++copies;
        return hotkeys;
    }
    bool keepsSuperKey() override { return isSuperKeyKept; }
    bool isHeldElsewhere(quint32 keyCode, quint32 modifiers) override
    {
        return heldElsewhere.contains({keyCode, modifiers});
    }

    /// Nothing makes the call fail.
    std::optional<QList<SymbolicHotkey>> hotkeys = QList<SymbolicHotkey>();
    /// Key codes and masks.
    QSet<std::pair<quint32, quint32>> heldElsewhere;
    bool isSuperKeyKept = false;
    int copies = 0;
};
