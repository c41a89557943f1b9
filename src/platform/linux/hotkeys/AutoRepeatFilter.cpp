#include "platform/linux/hotkeys/AutoRepeatFilter.h"

namespace
{
bool isDown(XKeycode key, const AutoRepeatFilter::KeyMap &map)
{
    const auto bit = quint8(key);
    return map[bit / 8] & (1 << (bit % 8));
}
} // namespace

bool AutoRepeatFilter::isFresh(XKeycode key, KeyDown down)
{
    const bool wasHeld = !m_heldKeys.insert(key).second;
    return down == KeyDown::press || !wasHeld;
}

bool AutoRepeatFilter::markIfDown(XKeycode key, const KeyMap &map)
{
    const bool isDownNow = isDown(key, map);
    if (isDownNow)
        m_heldKeys.insert(key);
    return isDownNow;
}

void AutoRepeatFilter::releaseAllUp(const KeyMap &map)
{
    std::erase_if(m_heldKeys, [&map](XKeycode key) { return !isDown(key, map); });
}
