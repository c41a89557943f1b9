// Stands where we know of no way to learn the desktop's own keyboard shortcuts.
#pragma once

#include "platform/SymbolicHotkeys.h"

class AbsentSymbolicHotkeys : public SymbolicHotkeys
{
public:
    std::optional<QList<SymbolicHotkey>> copySymbolicHotkeys() override { return std::nullopt; }
};
