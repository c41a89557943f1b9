#include "platform/linux/x11/PressFilter.h"

namespace
{
/// What the server's clock may be off by.
constexpr std::chrono::milliseconds tolerance{20};

bool isDown(PressFilter::Key key, const PressFilter::KeyMap &map)
{
    return map[key / 8] & (1 << (key % 8));
}
} // namespace

bool PressFilter::isFresh(Key key, quint32 time)
{
    const auto held = m_lastPress.find(key);
    if (held != m_lastPress.end()) {
        const auto &last = held->second;
        if (!last || std::chrono::milliseconds(quint32(time - *last)) >= m_repeatDelay - tolerance)
            return false;
    }
    m_lastPress.insert_or_assign(key, time);
    return true;
}

void PressFilter::markIfDown(Key key, const KeyMap &map)
{
    if (isDown(key, map))
        m_lastPress.try_emplace(key, std::nullopt);
}

void PressFilter::releaseAllUp(const KeyMap &map)
{
    std::erase_if(m_lastPress, [&map](const auto &held) { return !isDown(held.first, map); });
}
