// Which physical keys have a keysym in the user's keyboard layout.
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
    /// A keyboard without keys.
    LayoutKeys() = default;

    /// Of a key map and the number of the layout in it that is in use; keeps nothing of it.
    LayoutKeys(xkb_keymap *keymap, quint32 layout);

    struct Key {
        VirtualKey virtualKey;
        /// Whether the layout has the keysym where Shift is held.
        bool needsShift;

        bool operator==(const Key &) const = default;
    };

    /// The keys that have a keysym: those of the layout in use, else of the first other one that
    /// has it at all, and there on the lowest level that does. Only keys with virtual key codes.
    QList<Key> keysWithKeysym(quint32 keysym) const { return m_byKeysym.value(keysym).keys; }

    /// Nothing if the key has no virtual key code.
    std::optional<VirtualKey> virtualKey(XKeycode keycode) const;

    bool operator==(const LayoutKeys &) const = default;

private:
    struct Found {
        /// How many layouts come before that of the keys.
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
