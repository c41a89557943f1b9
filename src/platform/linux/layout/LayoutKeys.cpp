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
        const xkb_keycode_t keycode = xkb_keymap_key_by_name(keymap, key.xkbName);
        if (keycode == XKB_KEYCODE_INVALID)
            continue;
        m_byKeycode.insert(XKeycode(keycode), key.virtualKey);
        add(keymap, layout, XKeycode(keycode), key.virtualKey);
    }
}

void LayoutKeys::add(xkb_keymap *keymap, quint32 layout, XKeycode keycode, VirtualKey virtualKey)
{
    const auto key = xkb_keycode_t(keycode);
    const auto layouts = xkb_keymap_num_layouts_for_key(keymap, key);
    for (quint32 i = 0; i < layouts; ++i) {
        // A key may have fewer layouts than the keyboard; the layout in use then wraps to one of
        // its own.
        const quint32 layoutOfKey = (layout + i) % layouts;
        const auto levels = xkb_keymap_num_levels_for_key(keymap, key, layoutOfKey);
        for (xkb_level_index_t level = 0; level < levels; ++level) {
            const xkb_keysym_t *keysyms = nullptr;
            // Skip keys that give several keysyms at once; no shortcut refers to them.
            if (xkb_keymap_key_get_syms_by_level(keymap, key, layoutOfKey, level, &keysyms) == 1)
                add(keysyms[0], {i, level, {{virtualKey, level == shiftLevel}}});
        }
    }
}

void LayoutKeys::add(quint32 keysym, const Found &found)
{
    const auto former = m_byKeysym.find(keysym);
    const auto rank = [](const Found &some) { return std::tuple(some.layoutRank, some.level); };
    if (former == m_byKeysym.end() || rank(found) < rank(*former))
        m_byKeysym.insert(keysym, found);
    else if (rank(found) == rank(*former))
        former->keys += found.keys;
}

std::optional<VirtualKey> LayoutKeys::virtualKey(XKeycode keycode) const
{
    const auto found = m_byKeycode.constFind(keycode);
    if (found == m_byKeycode.cend())
        return std::nullopt;
    return *found;
}
