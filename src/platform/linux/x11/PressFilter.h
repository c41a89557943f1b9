// Tells a fresh press of a key from the automatic repeats of a held one.
#pragma once

#include "platform/linux/x11/AutoRepeat.h"

#include <QtGlobal>
#include <array>
#include <map>
#include <optional>

/// Once a grab was released early, the server reports a press and a repeat alike, as "down", and
/// no release. A "down" is a press if the key was seen up since the last one, or if it comes sooner
/// than the next repeat could.
class PressFilter
{
public:
    using Key = quint8;
    /// One bit for each key, as XQueryKeymap has it.
    using KeyMap = std::array<quint8, 32>;

    void setAutoRepeat(AutoRepeat autoRepeat) { m_autoRepeat = autoRepeat; }

    /// Notes a "down". True for a press that the user made, and for the first "down" of a hold that
    /// began unseen. The time is the server's, in ms, and may wrap.
    bool isFresh(Key key, quint32 time);

    /// A key that is already down when its grab is made: what follows are repeats.
    void markIfDown(Key key, const KeyMap &map);

    /// The user let the key go.
    void released(Key key);

    /// Notes which of the held keys are not down any more.
    void releaseAllUp(const KeyMap &map);

    bool isHeld(Key key) const;
    bool hasHeldKeys() const;

private:
    struct LastDown {
        /// Nothing if we did not see it.
        std::optional<quint32> time;
        /// How long after it the server may send a repeat at the earliest.
        std::chrono::milliseconds soonestRepeat{0};
        /// The key was not seen up since.
        bool isHeld = true;
    };

    AutoRepeat m_autoRepeat;
    std::map<Key, LastDown> m_keys;
};
