#include "platform/linux/x11/X11Keyboard.h"

#include "platform/EventFlag.h"
#include "platform/ModifierForms.h"
#include "platform/linux/keys/KeyCodes.h"
#include "platform/linux/x11/X11Connection.h"
#include "platform/linux/x11/Xkb.h"

#include <algorithm>
#include <span>

namespace
{
// Keysyms as X11 defines them.
constexpr xcb_keysym_t scrollLock = 0xff14;
constexpr xcb_keysym_t numLock = 0xff7f;
constexpr xcb_keysym_t altLeft = 0xffe9;
constexpr xcb_keysym_t altRight = 0xffea;
constexpr xcb_keysym_t superLeft = 0xffeb;
constexpr xcb_keysym_t superRight = 0xffec;

QByteArray keyName(const char (&name)[4])
{
    return QByteArray(name, qsizetype(qstrnlen(name, sizeof name)));
}

/// The keys of each modifier and their keysyms.
class ModifierMap
{
public:
    ModifierMap(const xcb_get_modifier_mapping_reply_t *map,
                const xcb_get_keyboard_mapping_reply_t *keys, xcb_keycode_t firstKey)
        : m_keysPerModifier(map->keycodes_per_modifier)
        , m_modifierKeys(xcb_get_modifier_mapping_keycodes(map),
                         size_t(xcb_get_modifier_mapping_keycodes_length(map)))
        , m_keysymsPerKey(keys->keysyms_per_keycode)
        , m_keysyms(xcb_get_keyboard_mapping_keysyms(keys),
                    size_t(xcb_get_keyboard_mapping_keysyms_length(keys)))
        , m_firstKey(firstKey)
    {
    }

    /// The first of Mod1 to Mod5 with a key that has the keysym; 0 if there is none.
    quint16 bitOf(xcb_keysym_t keysym) const
    {
        for (size_t modifier = XCB_MAP_INDEX_1; modifier <= XCB_MAP_INDEX_5; ++modifier) {
            const auto hasKeysym = [this, keysym](xcb_keycode_t key) { return has(key, keysym); };
            if (std::ranges::any_of(keysOf(modifier), hasKeysym))
                return quint16(1 << modifier);
        }
        return 0;
    }

    bool hasKeys(size_t modifier) const
    {
        return std::ranges::any_of(keysOf(modifier), [](xcb_keycode_t key) { return key != 0; });
    }

private:
    std::span<const xcb_keycode_t> keysOf(size_t modifier) const
    {
        return m_modifierKeys.subspan(modifier * m_keysPerModifier, m_keysPerModifier);
    }

    bool has(xcb_keycode_t key, xcb_keysym_t keysym) const
    {
        if (key < m_firstKey)
            return false;
        const auto keysyms =
            m_keysyms.subspan(size_t(key - m_firstKey) * m_keysymsPerKey, m_keysymsPerKey);
        return std::ranges::find(keysyms, keysym) != keysyms.end();
    }

    size_t m_keysPerModifier;
    std::span<const xcb_keycode_t> m_modifierKeys;
    size_t m_keysymsPerKey;
    std::span<const xcb_keysym_t> m_keysyms;
    xcb_keycode_t m_firstKey;
};

quint16 firstOf(quint16 preferred, quint16 otherwise)
{
    return preferred ? preferred : otherwise;
}
} // namespace

X11Keyboard X11Keyboard::read(const X11Connection &server)
{
    auto *const connection = server.get();
    X11Keyboard keyboard;
    const xcb_keycode_t first = xcb_get_setup(connection)->min_keycode;
    const xcb_keycode_t last = xcb_get_setup(connection)->max_keycode;
    keyboard.m_firstKey = XKeycode(first);
    keyboard.m_lastKey = XKeycode(last);

    const auto names =
        xcb_xkb_get_names(connection, XCB_XKB_ID_USE_CORE_KBD,
                          XCB_XKB_NAME_DETAIL_KEY_NAMES | XCB_XKB_NAME_DETAIL_KEY_ALIASES);
    const auto modifiers = xcb_get_modifier_mapping(connection);
    const auto keysyms = xcb_get_keyboard_mapping(connection, first, quint8(last - first + 1));

    keyboard.readKeyNames(connection, names.sequence);
    keyboard.findVirtualKeys();
    keyboard.readModifiers(connection, modifiers.sequence, keysyms.sequence);
    return keyboard;
}

void X11Keyboard::readKeyNames(xcb_connection_t *connection, unsigned int sequence)
{
    const auto reply = owned(xcb_xkb_get_names_reply(connection, {sequence}, nullptr));
    if (!reply)
        return;
    xcb_xkb_get_names_value_list_t lists;
    xcb_xkb_get_names_value_list_unpack(xcb_xkb_get_names_value_list(reply.get()), reply->nTypes,
                                        reply->indicators, reply->virtualMods, reply->groupNames,
                                        reply->nKeys, reply->nKeyAliases, reply->nRadioGroups,
                                        reply->which, &lists);
    for (int i = 0; i < reply->nKeys; ++i)
        m_keysByName.insert(keyName(lists.keyNames[i].name),
                            XKeycode(xcb_keycode_t(reply->firstKey + i)));
    for (int i = 0; i < reply->nKeyAliases; ++i) {
        // Copy the value: inserting may move what the hash holds. No key has the code 0.
        const XKeycode real = m_keysByName.value(keyName(lists.keyAliases[i].real));
        if (real != XKeycode())
            m_keysByName.insert(keyName(lists.keyAliases[i].alias), real);
    }
}

void X11Keyboard::findVirtualKeys()
{
    for (const KeyCodes::PhysicalKey &key : KeyCodes::allKeys()) {
        if (const auto found = find(key))
            m_virtualKeys[size_t(*found)] = key.virtualKey;
    }
}

void X11Keyboard::readModifiers(xcb_connection_t *connection, unsigned int mapSequence,
                                unsigned int keysSequence)
{
    const auto modifiers =
        owned(xcb_get_modifier_mapping_reply(connection, {mapSequence}, nullptr));
    const auto keysyms = owned(xcb_get_keyboard_mapping_reply(connection, {keysSequence}, nullptr));
    if (!modifiers || !keysyms)
        return;
    const ModifierMap map(modifiers.get(), keysyms.get(), xcb_keycode_t(m_firstKey));
    const quint16 option = firstOf(map.bitOf(altLeft), map.bitOf(altRight));
    const quint16 command = firstOf(map.bitOf(superLeft), map.bitOf(superRight));
    m_modifiers = {XCB_MOD_MASK_SHIFT, XCB_MOD_MASK_CONTROL, option, command};
    m_locks = quint16(map.bitOf(numLock) | map.bitOf(scrollLock));
    if (map.hasKeys(XCB_MAP_INDEX_LOCK))
        m_locks |= XCB_MOD_MASK_LOCK;
    m_locks &= quint16(~(option | command));
}

std::optional<XKeycode> X11Keyboard::find(const KeyCodes::PhysicalKey &key) const
{
    if (const auto byName = m_keysByName.constFind(key.xkbName); byName != m_keysByName.cend())
        return *byName;
    const XKeycode byNumber = xKeycode(key.evdevCode);
    if (m_keysByName.isEmpty() && byNumber >= m_firstKey && byNumber <= m_lastKey)
        return byNumber;
    return std::nullopt;
}

QList<XKeycode> X11Keyboard::keys(VirtualKey virtualKey) const
{
    QList<XKeycode> found;
    for (const KeyCodes::PhysicalKey &key : KeyCodes::physicalKeys(virtualKey)) {
        if (const auto keycode = find(key))
            found.append(*keycode);
    }
    return found;
}

std::optional<VirtualKey> X11Keyboard::virtualKey(XKeycode key) const
{
    const auto index = size_t(key);
    return index < m_virtualKeys.size() ? m_virtualKeys[index] : std::nullopt;
}

std::optional<quint16> X11Keyboard::modifiers(quint32 mask) const
{
    quint16 bits = 0;
    for (size_t i = 0; i < m_modifiers.size(); ++i) {
        if (!(mask & modifierForms[i].mask))
            continue;
        if (!m_modifiers[i])
            return std::nullopt;
        bits |= m_modifiers[i];
    }
    return bits;
}

QList<quint16> X11Keyboard::lockVariants(quint16 modifiers) const
{
    QList<quint16> variants;
    // Iterates over the subsets of the lock bits, from the full set to the empty one.
    for (quint16 on = m_locks;; on = quint16((on - 1) & m_locks)) {
        variants.append(modifiers | on);
        if (on == 0)
            return variants;
    }
}

quint16 X11Keyboard::combinationModifiers(quint16 state) const
{
    quint16 bits = 0;
    for (const quint16 modifier : m_modifiers)
        bits |= state & modifier;
    return bits;
}

quint32 X11Keyboard::eventFlags(quint16 state) const
{
    quint32 flags = 0;
    for (size_t i = 0; i < m_modifiers.size(); ++i) {
        if (state & m_modifiers[i])
            flags |= modifierForms[i].eventFlag;
    }
    return flags;
}
