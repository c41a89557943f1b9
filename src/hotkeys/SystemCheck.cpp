#include "hotkeys/SystemCheck.h"

#include "platform/ModifierForms.h"
#include "platform/SymbolicHotkeys.h"

#include <algorithm>
#include <utility>

namespace KeyboardShortcuts
{

namespace
{
constexpr quint32 modifierFlags =
    commandEventFlag | shiftEventFlag | optionEventFlag | controlEventFlag;

/// The desktop's first enabled shortcut that has exactly these keys.
std::optional<SymbolicHotkey> desktopShortcut(const Shortcut &shortcut, SymbolicHotkeys &service)
{
    const auto hotkeys = service.copySymbolicHotkeys();
    if (!hotkeys)
        return std::nullopt;
    const quint32 wanted = carbonToEventFlags(shortcut.carbonModifiers);
    const auto found = std::ranges::find_if(*hotkeys, [&](const SymbolicHotkey &hotkey) {
        return hotkey.isEnabled && hotkey.code == shortcut.carbonKeyCode
            && (hotkey.modifiers & modifierFlags) == wanted;
    });
    return found == hotkeys->cend() ? std::nullopt : std::optional(*found);
}

bool isHeldElsewhere(const Shortcut &shortcut, SymbolicHotkeys &service)
{
    // Larger numbers are not keys, and must not be truncated to one.
    return std::in_range<quint32>(shortcut.carbonKeyCode)
        && std::in_range<quint32>(shortcut.carbonModifiers)
        && service.isHeldElsewhere(quint32(shortcut.carbonKeyCode),
                                   quint32(shortcut.carbonModifiers));
}
} // namespace

quint32 carbonToEventFlags(qint64 carbonModifiers)
{
    return converted(carbonModifiers, &ModifierForms::mask, &ModifierForms::eventFlag);
}

bool isTakenBySystem(const Shortcut &shortcut, SymbolicHotkeys &service)
{
    return userOfKeys(shortcut, service).has_value();
}

std::optional<KeyUser> userOfKeys(const Shortcut &shortcut, SymbolicHotkeys &service)
{
    if (const auto hotkey = desktopShortcut(shortcut, service))
        return KeyUser{KeyUser::Kind::desktop, hotkey->action};
    if (shortcut.carbonModifiers == commandKey && service.keepsSuperKey())
        return KeyUser{KeyUser::Kind::superKey};
    if (isHeldElsewhere(shortcut, service))
        return KeyUser{KeyUser::Kind::program};
    return std::nullopt;
}

} // namespace KeyboardShortcuts
