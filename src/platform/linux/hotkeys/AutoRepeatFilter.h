// Tells a fresh press of a key from the automatic repeats of a held one.
#pragma once

#include "platform/linux/keys/KeyNumbers.h"

#include <QtGlobal>
#include <array>
#include <set>

/// How the X server reports that a key is down.
enum class KeyDown {
    press,
    repeat,
    /// It does not say which: the event comes from a core grab.
    pressOrRepeat,
};

/// A "down" is fresh if the server calls it a press, or if the key was up before it as far as is
/// known. So a hold that began unseen counts with its first repeat, and only with that.
class AutoRepeatFilter
{
public:
    /// One bit for each key, as XQueryKeymap has it.
    using KeyMap = std::array<quint8, 32>;

    /// Notes a "down". True for a press that the user made, and for the first "down" of a hold that
    /// began unseen.
    bool isFresh(XKeycode key, KeyDown down);

    /// A key that is already down when its grab is made: what follows are repeats. True if it is.
    bool markIfDown(XKeycode key, const KeyMap &map);

    /// The user let the key go.
    void released(XKeycode key) { m_heldKeys.erase(key); }

    /// Notes which of the held keys are not down any more.
    void releaseAllUp(const KeyMap &map);

    bool isHeld(XKeycode key) const { return m_heldKeys.contains(key); }
    bool hasHeldKeys() const { return !m_heldKeys.empty(); }

private:
    std::set<XKeycode> m_heldKeys;
};
