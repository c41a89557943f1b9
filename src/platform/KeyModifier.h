// The modifier keys that combinations can use.
#pragma once

#include <QtGlobal>

/// The bits of a modifier mask. No others are ever set.
enum KeyModifier : quint32 {
    commandKey = 0x100,
    shiftKey = 0x200,
    optionKey = 0x800,
    controlKey = 0x1000,
};

constexpr quint32 allModifiers = commandKey | shiftKey | optionKey | controlKey;
