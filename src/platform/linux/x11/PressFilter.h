// Tells a fresh press of a key from the automatic repeats of a held one.
#pragma once

#include "platform/linux/x11/AutoRepeat.h"

#include <QtGlobal>
#include <array>
#include <map>
#include <optional>

/// Once a grab was released early, the server reports a press and a repeat alike, as "down", and
/// no release. A "down" is a press if the key was seen up since the last one, or if it comes at a
/// time at which no repeat is due.
class PressFilter
{
public:
    using Key = quint8;
    /// One bit for each key, as XQueryKeymap has it.
    using KeyMap = std::array<quint8, 32>;

    /// How often key maps are to be read while a key is held. Shorter than the fastest usual repeat
    /// interval, 10 ms, and than the time for which a key is up between two presses.
    static constexpr std::chrono::milliseconds keyMapInterval{5};

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
    enum class Nature {
        /// Further repeats follow. From the first repeat on the grab stays until the key is
        /// released, which the server reports.
        repeat,
        /// The key was up less than a repeat delay before, so it cannot be a repeat.
        press,
        /// A press, or a repeat of a hold that began unseen.
        unknown,
    };
    struct LastDown {
        Nature nature = Nature::repeat;
        /// Nothing if we did not see it.
        std::optional<quint32> time;
        /// The key was not seen up since.
        bool isHeld = true;
        /// How many key maps have shown it down since.
        int keyMaps = 0;
    };

    bool isRepeatDue(const LastDown &last, std::chrono::milliseconds sinceLast) const;

    AutoRepeat m_autoRepeat;
    std::map<Key, LastDown> m_keys;
};
