#include "platform/linux/x11/PressFilter.h"

#include <algorithm>

using std::chrono::milliseconds;

namespace
{
/// The server's timer never fires early, but times are whole milliseconds.
constexpr milliseconds rounding{2};

/// By how much a busy server may send a repeat late.
constexpr milliseconds lateness{10};

bool isDown(PressFilter::Key key, const PressFilter::KeyMap &map)
{
    return map[key / 8] & (1 << (key % 8));
}
} // namespace

bool PressFilter::isFresh(Key key, quint32 time)
{
    const auto known = m_keys.find(key);
    const LastDown last = known != m_keys.end() ? known->second : LastDown{.isHeld = false};
    const auto sinceLast =
        last.time ? milliseconds(quint32(time - *last.time)) : milliseconds::max();
    const bool isFresh = !last.isHeld || !isRepeatDue(last, sinceLast);
    // A hold that began after the last "down" does not repeat before the delay has passed.
    const bool isCertain = !last.isHeld && sinceLast < m_autoRepeat.delay - rounding;
    const Nature fresh = isCertain ? Nature::press : Nature::unknown;
    m_keys[key] = {.nature = isFresh ? fresh : Nature::repeat, .time = time};
    return isFresh;
}

/// Whether the server sends a repeat at that time if the key was held since the last "down".
bool PressFilter::isRepeatDue(const LastDown &last, milliseconds sinceLast) const
{
    const bool isAfterDelay = sinceLast >= m_autoRepeat.delay - rounding;
    if (last.nature != Nature::unknown || isAfterDelay)
        return last.nature == Nature::repeat || isAfterDelay;
    if (sinceLast < m_autoRepeat.interval - rounding)
        return false;
    // Later ones may be due as well, if the modifiers were up in between. Enough key maps exclude
    // that the key was.
    const bool isWatched = last.keyMaps * keyMapInterval * 5 >= sinceLast * 4;
    return isWatched || sinceLast <= m_autoRepeat.interval + lateness;
}

void PressFilter::markIfDown(Key key, const KeyMap &map)
{
    if (isDown(key, map) && !isHeld(key))
        m_keys.insert_or_assign(key, LastDown{});
}

void PressFilter::released(Key key)
{
    if (const auto known = m_keys.find(key); known != m_keys.end())
        known->second.isHeld = false;
}

void PressFilter::releaseAllUp(const KeyMap &map)
{
    for (auto &[key, last] : m_keys) {
        last.isHeld = last.isHeld && isDown(key, map);
        ++last.keyMaps;
    }
}

bool PressFilter::isHeld(Key key) const
{
    const auto known = m_keys.find(key);
    return known != m_keys.end() && known->second.isHeld;
}

bool PressFilter::hasHeldKeys() const
{
    return std::ranges::any_of(m_keys, [](const auto &key) { return key.second.isHeld; });
}
