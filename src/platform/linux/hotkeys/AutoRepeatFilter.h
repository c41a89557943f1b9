// Tells fresh presses of a key from the auto-repeats of a held one.
#pragma once

#include "platform/linux/keys/KeyNumbers.h"

#include <QtGlobal>
#include <array>
#include <set>

/// How the X server reports that a key is down.
enum class KeyDown {
    press,
    repeat,
    /// The event comes from a core grab, which does not tell the two apart.
    pressOrRepeat,
};

/// A "down" is fresh if the server calls it a press, or if the key was up before as far as is
/// known. So a hold whose beginning was not seen counts once, with its first repeat.
class AutoRepeatFilter
{
public:
    /// One bit for each key, as XQueryKeymap has it.
    using KeyMap = std::array<quint8, 32>;

    /// Records a "down". True for a real press and for the first "down" of a hold whose beginning
    /// was not seen.
    bool isFresh(XKeycode key, KeyDown down);

    /// Records the key as held if it is already down when its grab is made: what follows are
    /// repeats. Returns whether it is down.
    bool markIfDown(XKeycode key, const KeyMap &map);

    /// Records that the key was released.
    void released(XKeycode key) { m_heldKeys.erase(key); }

    /// Releases all held keys that are no longer down.
    void releaseAllUp(const KeyMap &map);

    bool isHeld(XKeycode key) const { return m_heldKeys.contains(key); }
    bool hasHeldKeys() const { return !m_heldKeys.empty(); }

private:
    std::set<XKeycode> m_heldKeys;
};
