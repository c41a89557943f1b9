// Which physical keys have a keysym in the user's keyboard layout.
#pragma once

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
        quint16 virtualKeyCode;
        /// Whether the layout has the keysym where Shift is held.
        bool needsShift;

        bool operator==(const Key &) const = default;
    };

    /// The keys that have a keysym: those of the layout in use, else of the first other one that
    /// has it at all, and there on the lowest level that does. Only keys with virtual key codes.
    QList<Key> keysWithKeysym(quint32 keysym) const { return m_byKeysym.value(keysym).keys; }

    /// The virtual key code of an X key code; nothing if that key has none.
    std::optional<quint16> virtualKeyCode(quint32 keycode) const;

    bool operator==(const LayoutKeys &) const = default;

private:
    struct Found {
        /// How many layouts come before that of the keys.
        quint32 layoutRank;
        quint32 level;
        QList<Key> keys;

        bool operator==(const Found &) const = default;
    };

    void add(xkb_keymap *keymap, quint32 layout, quint32 keycode, quint16 virtualKeyCode);
    void add(quint32 keysym, const Found &found);

    QHash<quint32, Found> m_byKeysym;
    QHash<quint32, quint16> m_byKeycode;
};
