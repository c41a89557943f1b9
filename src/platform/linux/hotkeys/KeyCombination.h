// A key combination as the hot key services register it.
#pragma once

#include "platform/linux/keys/KeyNumbers.h"

/// A key with a mask of KeyModifier bits.
struct KeyCombination {
    VirtualKey key;
    quint32 modifiers;

    auto operator<=>(const KeyCombination &) const = default;
};
