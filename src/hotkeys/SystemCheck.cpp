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

bool isDesktopShortcut(const Shortcut &shortcut, SymbolicHotkeys &service)
{
    const auto hotkeys = service.copySymbolicHotkeys();
    if (!hotkeys)
        return false;
    const quint32 wanted = carbonToEventFlags(shortcut.carbonModifiers);
    return std::ranges::any_of(*hotkeys, [&](const SymbolicHotkey &hotkey) {
        return hotkey.isEnabled && hotkey.code == shortcut.carbonKeyCode
            && (hotkey.modifiers & modifierFlags) == wanted;
    });
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
    return isDesktopShortcut(shortcut, service) || isHeldElsewhere(shortcut, service);
}

} // namespace KeyboardShortcuts
