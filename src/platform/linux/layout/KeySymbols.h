// What each key gives in the user's keyboard layout, for each set of held modifiers.
#pragma once

#include "platform/linux/keys/Accelerator.h"

#include <QList>
#include <array>
#include <vector>

struct xkb_keymap;

/// Much smaller than the key map, which takes half a megabyte.
class KeySymbols
{
public:
    /// Of a keyboard without keys.
    KeySymbols() = default;

    /// Reads a key map, given the index of the layout that is in use; keeps no reference to it.
    KeySymbols(xkb_keymap *keymap, quint32 layout);

    bool isEmpty() const { return m_rows.empty(); }

    struct Symbols {
        KeySymbol symbol;
        /// While Num Lock is on.
        KeySymbol withNumLock;
        bool isOnKeypad = false;

        bool operator==(const Symbols &) const = default;
    };

    /// What the keys of a virtual key code give with these KeyModifier bits held. A keysym that is
    /// not Latin is replaced by that of the first other layout that has a Latin one on the key, as
    /// compositors do for shortcuts.
    QList<Symbols> symbols(VirtualKey key, quint32 modifiers) const;

    bool operator==(const KeySymbols &) const = default;

private:
    struct Row {
        VirtualKey key;
        /// By subsets of the modifiers.
        std::array<Symbols, 16> symbols;

        bool operator==(const Row &) const = default;
    };

    std::vector<Row> m_rows;
};
