// What the user's keyboard layout puts on the keys, as it is printed there.
#pragma once

#include <QString>
#include <QtGlobal>
#include <array>

struct xkb_keymap;

/// Two keys have the same label only if the layout itself gives both the same character.
class KeyLabels
{
public:
    /// Makes the labels of a US keyboard.
    KeyLabels();

    /// Reads a key map, given the index of the layout that is in use; keeps no reference to it.
    KeyLabels(xkb_keymap *keymap, quint32 layout);

    /// The label of a virtual key code; empty if its key has no character, or if every label that
    /// would suit it is on another key.
    QString label(qint64 keyCode) const;

    bool operator==(const KeyLabels &) const = default;

private:
    /// By virtual key code; 0 for keys without a label.
    std::array<char32_t, 95> m_characters;
};
