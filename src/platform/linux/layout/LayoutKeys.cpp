#include "platform/linux/layout/LayoutKeys.h"

#include "platform/linux/keys/KeyCodes.h"

#include <tuple>
#include <xkbcommon/xkbcommon.h>

namespace
{
constexpr xkb_level_index_t shiftLevel = 1;
}

LayoutKeys::LayoutKeys(xkb_keymap *keymap, quint32 layout)
{
    for (const KeyCodes::PhysicalKey &key : KeyCodes::allKeys()) {
        const xkb_keycode_t place = xkb_keymap_key_by_name(keymap, key.xkbName);
        if (place == XKB_KEYCODE_INVALID)
            continue;
        m_byPlace.insert(place, quint16(key.keyCode));
        add(keymap, layout, place, quint16(key.keyCode));
    }
}

void LayoutKeys::add(xkb_keymap *keymap, quint32 layout, quint32 place, quint16 virtualKeyCode)
{
    const auto layouts = xkb_keymap_num_layouts_for_key(keymap, place);
    for (quint32 i = 0; i < layouts; ++i) {
        // A key may have fewer layouts than the keyboard; that in use is then one of its own.
        const quint32 layoutOfKey = (layout + i) % layouts;
        const auto levels = xkb_keymap_num_levels_for_key(keymap, place, layoutOfKey);
        for (xkb_level_index_t level = 0; level < levels; ++level) {
            const xkb_keysym_t *symbols = nullptr;
            // No shortcut means a key that gives several symbols at once.
            if (xkb_keymap_key_get_syms_by_level(keymap, place, layoutOfKey, level, &symbols) == 1)
                add(symbols[0], {i, level, {{virtualKeyCode, level == shiftLevel}}});
        }
    }
}

void LayoutKeys::add(quint32 symbol, const Found &found)
{
    const auto former = m_bySymbol.find(symbol);
    const auto rank = [](const Found &some) { return std::tuple(some.layoutRank, some.level); };
    if (former == m_bySymbol.end() || rank(found) < rank(*former))
        m_bySymbol.insert(symbol, found);
    else if (rank(found) == rank(*former))
        former->keys += found.keys;
}

std::optional<quint16> LayoutKeys::virtualKeyCode(quint32 place) const
{
    const auto found = m_byPlace.constFind(place);
    if (found == m_byPlace.cend())
        return std::nullopt;
    return *found;
}
