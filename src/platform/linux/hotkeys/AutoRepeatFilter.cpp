#include "platform/linux/hotkeys/AutoRepeatFilter.h"

namespace
{
bool isDown(AutoRepeatFilter::Key key, const AutoRepeatFilter::KeyMap &map)
{
    return map[key / 8] & (1 << (key % 8));
}
} // namespace

bool AutoRepeatFilter::isFresh(Key key, KeyDown down)
{
    const bool wasHeld = !m_heldKeys.insert(key).second;
    return down == KeyDown::press || !wasHeld;
}

bool AutoRepeatFilter::markIfDown(Key key, const KeyMap &map)
{
    const bool isDownNow = isDown(key, map);
    if (isDownNow)
        m_heldKeys.insert(key);
    return isDownNow;
}

void AutoRepeatFilter::releaseAllUp(const KeyMap &map)
{
    std::erase_if(m_heldKeys, [&map](Key key) { return !isDown(key, map); });
}
