#include "platform/linux/x11/PressFilter.h"

#include <algorithm>

using namespace std::chrono;
using namespace std::chrono_literals;

namespace
{
/// The server's timer never fires early, but times are whole milliseconds.
constexpr milliseconds rounding{2};

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
    const bool isFresh = !last.isHeld || sinceLast < last.soonestRepeat - rounding;
    // A hold that began after the last "down" does not repeat before the delay has passed.
    const bool isCertain = !last.isHeld && sinceLast < m_autoRepeat.delay - rounding;
    LastDown &down = m_keys[key];
    down.time = time;
    down.isHeld = true;
    if (isCertain)
        down.soonestRepeat = m_autoRepeat.delay;
    else if (isFresh)
        // It may have been a repeat already, of a hold that began unseen.
        down.soonestRepeat = m_autoRepeat.interval;
    else
        // From now on the grab stays until the key is released, which the server reports.
        down.soonestRepeat = 0ms;
    return isFresh;
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
    for (auto &[key, last] : m_keys)
        last.isHeld = last.isHeld && isDown(key, map);
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
