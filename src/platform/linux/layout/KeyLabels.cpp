#include "platform/linux/layout/KeyLabels.h"

#include "platform/linux/keys/KeyCodes.h"

#include <QChar>
#include <algorithm>
#include <iterator>
#include <string_view>
#include <xkbcommon/xkbcommon.h>

using namespace std::string_view_literals;

namespace
{
using Characters = std::array<char32_t, 95>;

constexpr xkb_level_index_t plainLevel = 0;
constexpr xkb_level_index_t capitalLevel = 1;

constexpr Characters makeUSLabels()
{
    // The keys 0 to 50; Return, Tab and Space have no character.
    constexpr std::u32string_view labels =
        U"ASDFHGZXCV<BQWERYT123465=97-80]OU[IP\0LJ'K;\\,/NM.\0\0`"sv;
    Characters characters{};
    std::ranges::copy(labels, characters.begin());
    characters[93] = U'¥';
    characters[94] = U'_';
    return characters;
}

constexpr Characters usLabels = makeUSLabels();

constexpr struct {
    xkb_keysym_t keysym;
    char32_t accent;
} deadKeys[] = {
    {XKB_KEY_dead_grave, U'`'},
    {XKB_KEY_dead_acute, U'´'},
    {XKB_KEY_dead_circumflex, U'^'},
    {XKB_KEY_dead_tilde, U'~'},
    {XKB_KEY_dead_macron, U'¯'},
    {XKB_KEY_dead_breve, U'˘'},
    {XKB_KEY_dead_abovedot, U'˙'},
    {XKB_KEY_dead_diaeresis, U'¨'},
    {XKB_KEY_dead_abovering, U'˚'},
    {XKB_KEY_dead_doubleacute, U'˝'},
    {XKB_KEY_dead_caron, U'ˇ'},
    {XKB_KEY_dead_cedilla, U'¸'},
    {XKB_KEY_dead_ogonek, U'˛'},
    {XKB_KEY_dead_iota, U'ͺ'},
    {XKB_KEY_dead_voiced_sound, U'゛'},
    {XKB_KEY_dead_semivoiced_sound, U'゜'},
    {XKB_KEY_dead_psili, U'᾿'},
    {XKB_KEY_dead_dasia, U'῾'},
    {XKB_KEY_dead_doublegrave, U'˵'},
    {XKB_KEY_dead_belowring, U'˳'},
    {XKB_KEY_dead_belowmacron, U'ˍ'},
    {XKB_KEY_dead_belowcircumflex, U'ꞈ'},
    {XKB_KEY_dead_belowtilde, U'˷'},
    {XKB_KEY_dead_lowline, U'_'},
    {XKB_KEY_dead_aboveverticalline, U'ˈ'},
    {XKB_KEY_dead_belowverticalline, U'ˌ'},
};

/// The character of a keysym, the accent of a dead key; 0 if it has none that can be seen.
char32_t character(xkb_keysym_t keysym)
{
    const auto *const deadKey =
        std::ranges::find(deadKeys, keysym, [](const auto &key) { return key.keysym; });
    if (deadKey != std::end(deadKeys))
        return deadKey->accent;
    const char32_t found = xkb_keysym_to_utf32(keysym);
    return QChar::isPrint(found) && !QChar::isSpace(found) ? found : 0;
}

bool isCapital(char32_t capital, char32_t letter)
{
    // A Turkish pair does not map to each other without regard to the language.
    if ((letter == U'ı' && capital == U'I') || (letter == U'i' && capital == U'İ'))
        return true;
    // Map the capital, not the letter: the final sigma has the capital of another letter.
    return capital != letter && QChar::toLower(capital) == letter;
}

bool isLatinLetter(char32_t character)
{
    return QChar::isLetter(character) && QChar::script(character) == QChar::Script_Latin;
}

/// Whether it is a letter of another alphabet, or one of the signs that some write as marks.
bool isForeignLetter(char32_t character)
{
    const auto script = QChar::script(character);
    return (QChar::isLetter(character) || QChar::isMark(character)) && script != QChar::Script_Latin
        && script != QChar::Script_Common && script != QChar::Script_Inherited;
}

/// A key of a key map.
struct MappedKey {
    xkb_keymap *keymap;
    xkb_keycode_t keycode;

    char32_t characterAt(quint32 layout, xkb_level_index_t level) const
    {
        const xkb_keysym_t *keysyms = nullptr;
        // Wraps the layout if the key has fewer ones than the keyboard. A key that gives several
        // keysyms at once has no label of one character.
        const int count =
            xkb_keymap_key_get_syms_by_level(keymap, keycode, layout, level, &keysyms);
        return count == 1 ? character(keysyms[0]) : 0;
    }

    char32_t labelIn(quint32 layout) const
    {
        const char32_t plain = characterAt(layout, plainLevel);
        const char32_t shifted = characterAt(layout, capitalLevel);
        return isCapital(shifted, plain) ? shifted : plain;
    }

    /// The Latin letter of the first layout that has one on this key, or 0.
    char32_t latinLetter() const
    {
        const auto layouts = xkb_keymap_num_layouts_for_key(keymap, keycode);
        for (quint32 layout = 0; layout < layouts; ++layout) {
            if (const char32_t label = labelIn(layout); isLatinLetter(label))
                return label;
        }
        return 0;
    }
};

bool contains(const Characters &characters, char32_t character)
{
    return std::ranges::find(characters, character) != characters.end();
}
} // namespace

KeyLabels::KeyLabels()
    : m_characters(usLabels)
{
}

KeyLabels::KeyLabels(xkb_keymap *keymap, quint32 layout)
    : m_characters{}
{
    Characters own{};
    Characters latin{};
    for (const KeyCodes::PhysicalKey &key : KeyCodes::allKeys()) {
        const auto code = size_t(key.virtualKey);
        const MappedKey mapped{keymap, xkb_keymap_key_by_name(keymap, key.xkbName)};
        if (code >= usLabels.size() || !usLabels[code] || mapped.keycode == XKB_KEYCODE_INVALID)
            continue;
        own[code] = mapped.labelIn(layout);
        if (isForeignLetter(own[code]))
            latin[code] = mapped.latinLetter();
    }
    // What the layout itself puts on a key is the label of no other key.
    const auto isFree = [this, &own](char32_t label) {
        return label && !contains(own, label) && !contains(m_characters, label);
    };
    for (size_t code = 0; code < own.size(); ++code)
        m_characters[code] = isFree(latin[code]) ? latin[code] : own[code];
    for (size_t code = 0; code < own.size(); ++code) {
        if (!m_characters[code] && isFree(usLabels[code]))
            m_characters[code] = usLabels[code];
    }
}

QString KeyLabels::label(qint64 keyCode) const
{
    if (keyCode < 0 || keyCode >= qint64(m_characters.size()))
        return {};
    const char32_t character = m_characters[size_t(keyCode)];
    if (!character)
        return {};
    const QString label = QString::fromUcs4(&character, 1);
    // A mark would otherwise combine with the text in front of it.
    return QChar::isMark(character) ? u'◌' + label : label;
}
