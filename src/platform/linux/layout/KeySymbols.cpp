#include "platform/linux/layout/KeySymbols.h"

#include "platform/ModifierForms.h"
#include "platform/linux/keys/KeyCodes.h"
#include "platform/linux/layout/Xkbcommon.h"

#include <QSet>
#include <string_view>

namespace
{
/// The modifiers of key maps, in the order of modifierForms. All compositors use these.
constexpr const char *xkbModifierNames[] = {XKB_MOD_NAME_SHIFT, XKB_MOD_NAME_CTRL, XKB_MOD_NAME_ALT,
                                            XKB_MOD_NAME_LOGO};
constexpr quint32 modifierSubsets = 1 << modifierForms.size();

bool isLatin(xkb_keysym_t keysym)
{
    return keysym != XKB_KEY_NoSymbol && keysym <= 0xff;
}

bool isDead(xkb_keysym_t keysym)
{
    return keysym >= XKB_KEY_dead_grave && keysym <= XKB_KEY_dead_greek;
}

/// The keysyms of one layout of a key map, under any modifiers.
class Reader
{
public:
    Reader(xkb_keymap *keymap, quint32 layout)
        : m_keymap(keymap)
        , m_layout(layout)
        , m_state(xkb_state_new(keymap))
    {
        const auto layouts = xkb_keymap_num_layouts(keymap);
        for (xkb_layout_index_t i = 0; i < layouts; ++i)
            m_plainKeysyms << plainKeysyms(i);
    }

    /// Holds a subset of the modifiers, with Num Lock on or off.
    void hold(quint32 subset, bool hasNumLock)
    {
        xkb_mod_mask_t held = 0;
        for (quint32 i = 0; i < modifierForms.size(); ++i) {
            if (subset & (1U << i))
                held |= maskOf(xkbModifierNames[i]);
        }
        const xkb_mod_mask_t locked = hasNumLock ? maskOf(XKB_MOD_NAME_NUM) : 0;
        xkb_state_update_mask(m_state.get(), held, 0, locked, 0, 0, m_layout);
    }

    KeySymbol symbol(xkb_keycode_t key) const
    {
        xkb_keysym_t keysym = xkb_state_key_get_one_sym(m_state.get(), key);
        if (isDead(keysym))
            return {};
        if (!isLatin(keysym)) {
            if (const auto latin = latinKeysym(key))
                keysym = latin;
        }
        return {keysym, consumedModifiers(key)};
    }

private:
    xkb_mod_mask_t maskOf(const char *modifier) const
    {
        const auto index = xkb_keymap_mod_get_index(m_keymap, modifier);
        return index == XKB_MOD_INVALID ? 0 : 1U << index;
    }

    quint32 consumedModifiers(xkb_keycode_t key) const
    {
        quint32 consumed = 0;
        for (quint32 i = 0; i < modifierForms.size(); ++i) {
            const auto index = xkb_keymap_mod_get_index(m_keymap, xkbModifierNames[i]);
            if (index != XKB_MOD_INVALID
                && xkb_state_mod_index_is_consumed2(m_state.get(), key, index,
                                                    XKB_CONSUMED_MODE_GTK)
                    == 1)
                consumed |= modifierForms[i].mask;
        }
        return consumed;
    }

    /// What the keys of a layout give without modifiers.
    QSet<xkb_keysym_t> plainKeysyms(xkb_layout_index_t layout) const
    {
        QSet<xkb_keysym_t> keysyms;
        const XkbState state(xkb_state_new(m_keymap));
        xkb_state_update_mask(state.get(), 0, 0, 0, 0, 0, layout);
        const auto end = xkb_keymap_max_keycode(m_keymap);
        for (auto key = xkb_keymap_min_keycode(m_keymap); key < end; ++key)
            keysyms << xkb_state_key_get_one_sym(state.get(), key);
        return keysyms;
    }

    /// The Latin keysym of the first other layout that has one on the key; 0 if there is none, or
    /// if a layout before that one has the same keysym on another key. This is the rule of Qt (its
    /// lookupLatinKeysym), which KWin uses for shortcuts.
    xkb_keysym_t latinKeysym(xkb_keycode_t key) const
    {
        const auto layouts = xkb_keymap_num_layouts_for_key(m_keymap, key);
        const auto current = xkb_state_key_get_layout(m_state.get(), key);
        for (xkb_layout_index_t layout = 0; layout < layouts; ++layout) {
            const xkb_keysym_t *keysyms = nullptr;
            const auto level = xkb_state_key_get_level(m_state.get(), key, layout);
            if (layout == current
                || xkb_keymap_key_get_syms_by_level(m_keymap, key, layout, level, &keysyms) != 1
                || !isLatin(keysyms[0]))
                continue;
            const xkb_keysym_t found = keysyms[0];
            for (xkb_layout_index_t before = 0; before < layout; ++before) {
                if (m_plainKeysyms[before].contains(found))
                    return XKB_KEY_NoSymbol;
            }
            return found;
        }
        return XKB_KEY_NoSymbol;
    }

    xkb_keymap *m_keymap;
    quint32 m_layout;
    XkbState m_state;
    QList<QSet<xkb_keysym_t>> m_plainKeysyms;
};

quint32 subsetOf(quint32 modifiers)
{
    quint32 subset = 0;
    for (quint32 i = 0; i < modifierForms.size(); ++i) {
        if (modifiers & modifierForms[i].mask)
            subset |= 1U << i;
    }
    return subset;
}
} // namespace

KeySymbols::KeySymbols(xkb_keymap *keymap, quint32 layout)
{
    Reader reader(keymap, layout);
    std::vector<xkb_keycode_t> keycodes;
    for (const KeyCodes::PhysicalKey &key : KeyCodes::allKeys()) {
        const xkb_keycode_t keycode = xkb_keymap_key_by_name(keymap, key.xkbName);
        if (keycode == XKB_KEYCODE_INVALID)
            continue;
        keycodes.push_back(keycode);
        m_rows.push_back({key.virtualKey, {}});
        const bool isOnKeypad = std::string_view(key.xkbName).starts_with("KP");
        for (Symbols &symbols : m_rows.back().symbols)
            symbols.isOnKeypad = isOnKeypad;
    }
    for (quint32 subset = 0; subset < modifierSubsets; ++subset) {
        reader.hold(subset, false);
        for (std::size_t i = 0; i < keycodes.size(); ++i)
            m_rows[i].symbols[subset].symbol = reader.symbol(keycodes[i]);
        reader.hold(subset, true);
        for (std::size_t i = 0; i < keycodes.size(); ++i)
            m_rows[i].symbols[subset].withNumLock = reader.symbol(keycodes[i]);
    }
}

QList<KeySymbols::Symbols> KeySymbols::symbols(VirtualKey key, quint32 modifiers) const
{
    QList<Symbols> found;
    for (const Row &row : m_rows) {
        if (row.key == key)
            found << row.symbols[subsetOf(modifiers)];
    }
    return found;
}
