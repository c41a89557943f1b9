#include "platform/EventFlag.h"
#include "platform/ModifierForms.h"
#include "platform/linux/keys/Accelerator.h"

#include <QChar>
#include <Qt>
#include <algorithm>
#include <iterator>
#include <xkbcommon/xkbcommon.h>

namespace
{
struct NamedKey {
    int key;
    xkb_keysym_t keysym;
    /// The keysym of the keypad's key; 0 if it has none.
    xkb_keysym_t keypadKeysym = 0;
};

/// All keys with a name instead of a character, except the function keys. Where a key or a keysym
/// stands twice, the first line counts.
constexpr NamedKey namedKeys[] = {
    {Qt::Key_Escape, XKB_KEY_Escape},
    {Qt::Key_Tab, XKB_KEY_Tab},
    {Qt::Key_Backtab, XKB_KEY_Tab},
    {Qt::Key_Backspace, XKB_KEY_BackSpace},
    {Qt::Key_Return, XKB_KEY_Return},
    {Qt::Key_Enter, XKB_KEY_KP_Enter, XKB_KEY_KP_Enter},
    {Qt::Key_Insert, XKB_KEY_Insert, XKB_KEY_KP_Insert},
    {Qt::Key_Delete, XKB_KEY_Delete, XKB_KEY_KP_Delete},
    {Qt::Key_Pause, XKB_KEY_Pause},
    {Qt::Key_Print, XKB_KEY_Print},
    // Print pressed with Alt gives SysReq.
    {Qt::Key_SysReq, XKB_KEY_Print},
    {Qt::Key_Clear, XKB_KEY_Clear, XKB_KEY_KP_Begin},
    {Qt::Key_Home, XKB_KEY_Home, XKB_KEY_KP_Home},
    {Qt::Key_End, XKB_KEY_End, XKB_KEY_KP_End},
    {Qt::Key_Left, XKB_KEY_Left, XKB_KEY_KP_Left},
    {Qt::Key_Up, XKB_KEY_Up, XKB_KEY_KP_Up},
    {Qt::Key_Right, XKB_KEY_Right, XKB_KEY_KP_Right},
    {Qt::Key_Down, XKB_KEY_Down, XKB_KEY_KP_Down},
    {Qt::Key_PageUp, XKB_KEY_Page_Up, XKB_KEY_KP_Page_Up},
    {Qt::Key_PageDown, XKB_KEY_Page_Down, XKB_KEY_KP_Page_Down},
    {Qt::Key_ScrollLock, XKB_KEY_Scroll_Lock},
    {Qt::Key_Menu, XKB_KEY_Menu},
    {Qt::Key_Help, XKB_KEY_Help},
    {Qt::Key_VolumeDown, XKB_KEY_XF86AudioLowerVolume},
    {Qt::Key_VolumeMute, XKB_KEY_XF86AudioMute},
    {Qt::Key_VolumeUp, XKB_KEY_XF86AudioRaiseVolume},
    // What Tab gives with Shift, and Print with Alt.
    {Qt::Key_Backtab, XKB_KEY_ISO_Left_Tab},
    {Qt::Key_SysReq, XKB_KEY_Sys_Req},
    // Keys of Japanese and Korean keyboards.
    {Qt::Key_Hangul, XKB_KEY_Hangul},
    {Qt::Key_Hangul_Hanja, XKB_KEY_Hangul_Hanja},
    {Qt::Key_Eisu_toggle, XKB_KEY_Eisu_toggle},
    {Qt::Key_Hiragana_Katakana, XKB_KEY_Hiragana_Katakana},
};

xkb_keysym_t keypadCharacter(int key)
{
    switch (key) {
    case Qt::Key_Asterisk:
        return XKB_KEY_KP_Multiply;
    case Qt::Key_Plus:
        return XKB_KEY_KP_Add;
    case Qt::Key_Comma:
        return XKB_KEY_KP_Separator;
    case Qt::Key_Minus:
        return XKB_KEY_KP_Subtract;
    case Qt::Key_Period:
        return XKB_KEY_KP_Decimal;
    case Qt::Key_Slash:
        return XKB_KEY_KP_Divide;
    case Qt::Key_Equal:
        return XKB_KEY_KP_Equal;
    default:
        return key >= Qt::Key_0 && key <= Qt::Key_9 ? XKB_KEY_KP_0 + quint32(key - Qt::Key_0) : 0;
    }
}

constexpr int keypadCharacters[] = {
    Qt::Key_Asterisk, Qt::Key_Plus, Qt::Key_Comma, Qt::Key_Minus, Qt::Key_Period, Qt::Key_Slash,
    Qt::Key_Equal,    Qt::Key_0,    Qt::Key_1,     Qt::Key_2,     Qt::Key_3,      Qt::Key_4,
    Qt::Key_5,        Qt::Key_6,    Qt::Key_7,     Qt::Key_8,     Qt::Key_9,
};

bool isCharacter(int key)
{
    return key < Qt::Key_Escape && QChar::isPrint(uint(key));
}

xkb_keysym_t keysymOf(int key, bool isOnKeypad)
{
    if (isCharacter(key))
        return isOnKeypad ? keypadCharacter(key)
                          : xkb_keysym_to_lower(xkb_utf32_to_keysym(uint(key)));
    if (key >= Qt::Key_F1 && key <= Qt::Key_F35)
        return XKB_KEY_F1 + quint32(key - Qt::Key_F1);
    const auto *const found = std::ranges::find(namedKeys, key, &NamedKey::key);
    if (found == std::end(namedKeys))
        return 0;
    return isOnKeypad ? found->keypadKeysym : found->keysym;
}
} // namespace

std::optional<Accelerator> qtAccelerator(int code)
{
    const int key = code & ~int(Qt::KeyboardModifierMask);
    const Qt::KeyboardModifiers modifiers(code & int(Qt::KeyboardModifierMask));
    if (code <= 0 || modifiers.testFlag(Qt::GroupSwitchModifier))
        return {};
    const bool isOnKeypad = modifiers.testFlag(Qt::KeypadModifier);
    const xkb_keysym_t keysym = keysymOf(key, isOnKeypad);
    if (!keysym)
        return {};
    return Accelerator{
        .modifiers = converted(modifiers, &ModifierForms::qt, &ModifierForms::eventFlag)
            | (key == Qt::Key_Backtab ? shiftEventFlag : 0u),
        .keysym = keysym,
        .impliesShift = isCharacter(key) && !isOnKeypad && !QChar::isLetter(uint(key)),
    };
}

int qtKey(quint32 keysym)
{
    constexpr quint32 lastLatin1 = 0xff;
    if (keysym >= XKB_KEY_F1 && keysym <= XKB_KEY_F35)
        return Qt::Key_F1 + int(keysym - XKB_KEY_F1);
    if (keysym > 0 && keysym <= lastLatin1) {
        const quint32 upper = QChar::toUpper(keysym);
        return int(upper <= lastLatin1 ? upper : keysym);
    }
    for (const NamedKey &named : namedKeys) {
        if (keysym != 0 && (named.keysym == keysym || named.keypadKeysym == keysym))
            return named.key;
    }
    const auto *const onKeypad = std::ranges::find(keypadCharacters, keysym, keypadCharacter);
    if (onKeypad != std::end(keypadCharacters))
        return *onKeypad;
    const quint32 character = xkb_keysym_to_utf32(keysym);
    return isCharacter(int(character)) ? int(QChar::toUpper(character)) : 0;
}

std::optional<int> qtCode(const KeySymbol &symbol, quint32 modifiers)
{
    const int key = qtKey(symbol.keysym);
    if (!key)
        return std::nullopt;
    // A letter keeps Shift. A sign that Shift made does not.
    const bool keepsShift = symbol.consumedModifiers == shiftKey && QChar::isLetter(uint(key));
    const quint32 left = keepsShift ? modifiers : modifiers & ~symbol.consumedModifiers;
    return key | int(converted(left, &ModifierForms::mask, &ModifierForms::qt));
}
