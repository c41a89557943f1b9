// Tells a fresh press of a key from the automatic repeats of a held one.
#pragma once

#include <QtGlobal>
#include <array>
#include <chrono>
#include <map>
#include <optional>

/// The server says "down" for both alike once a grab was released early. So a key is marked as
/// held from its first press until it is seen up, and while it is marked only a press that comes
/// sooner than any automatic repeat could is a fresh one.
class PressFilter
{
public:
    using Key = quint8;
    /// One bit for each key, as XQueryKeymap has it.
    using KeyMap = std::array<quint8, 32>;

    /// How long a key must be held before the server repeats it.
    void setRepeatDelay(std::chrono::milliseconds delay) { m_repeatDelay = delay; }

    /// True for a press that the user made. The time is the server's, in ms, and may wrap.
    bool isFresh(Key key, quint32 time);

    /// A key that is already down when its grab is made: what follows are repeats.
    void markIfDown(Key key, const KeyMap &map);

    /// The user let the key go.
    void released(Key key) { m_lastPress.erase(key); }

    /// Forgets the keys that are not down any more.
    void releaseAllUp(const KeyMap &map);

    bool isHeld(Key key) const { return m_lastPress.contains(key); }
    bool hasHeldKeys() const { return !m_lastPress.empty(); }

private:
    std::chrono::milliseconds m_repeatDelay{};
    /// The held keys, with the time of the last press that the user made, if we saw it.
    std::map<Key, std::optional<quint32>> m_lastPress;
};
