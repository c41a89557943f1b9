// Maps keysyms to the physical keys that have them in the user's keyboard layout.
#pragma once

#include "platform/linux/keys/KeyNumbers.h"

#include <QHash>
#include <QList>
#include <QtGlobal>
#include <optional>

struct xkb_keymap;

class LayoutKeys
{
public:
    /// Makes a keyboard without keys.
    LayoutKeys() = default;

    /// Reads a key map, given the index of the layout that is in use; keeps no reference to it.
    LayoutKeys(xkb_keymap *keymap, quint32 layout);

    struct Key {
        VirtualKey virtualKey;
        /// Whether the keysym needs Shift to be held.
        bool needsShift;

        bool operator==(const Key &) const = default;
    };

    /// The keys that have a keysym, from the lowest level that has it in the layout in use or else
    /// in the first other layout that has it at all. Only keys with virtual key codes.
    QList<Key> keysWithKeysym(quint32 keysym) const { return m_byKeysym.value(keysym).keys; }

    /// The virtual key code of a key; nothing if it has none.
    std::optional<VirtualKey> virtualKey(XKeycode keycode) const;

    bool operator==(const LayoutKeys &) const = default;

private:
    struct Found {
        /// How many layouts are searched before the layout of the keys.
        quint32 layoutRank;
        quint32 level;
        QList<Key> keys;

        bool operator==(const Found &) const = default;
    };

    void add(xkb_keymap *keymap, quint32 layout, XKeycode keycode, VirtualKey virtualKey);
    void add(quint32 keysym, const Found &found);

    QHash<quint32, Found> m_byKeysym;
    QHash<XKeycode, VirtualKey> m_byKeycode;
};
