#include "platform/linux/recording/KeyTranslation.h"

#include "platform/ModifierForms.h"
#include "platform/linux/keys/KeyCodes.h"
#include "platform/linux/x11/X11Keyboard.h"

#include <QKeyEvent>

namespace KeyTranslation
{

namespace
{
constexpr VirtualKey escape{53};

bool isModifier(const QKeyEvent &press)
{
    switch (press.key()) {
    case Qt::Key_Shift:
    case Qt::Key_Control:
    case Qt::Key_Alt:
    case Qt::Key_AltGr:
    case Qt::Key_Meta:
    case Qt::Key_Super_L:
    case Qt::Key_Super_R:
    case Qt::Key_Hyper_L:
    case Qt::Key_Hyper_R:
    case Qt::Key_CapsLock:
    case Qt::Key_NumLock:
    case Qt::Key_Mode_switch:
        return true;
    default:
        break;
    }
    // The range ISO_Lock to ISO_Level5_Lock, most of which Qt has no keys for, and Shift_Lock.
    const quint32 keysym = press.nativeVirtualKey();
    return (keysym >= 0xfe01 && keysym <= 0xfe13) || keysym == 0xffe6;
}

std::optional<VirtualKey> virtualKey(XKeycode keycode, const X11Keyboard *keyboard)
{
    return keyboard ? keyboard->virtualKey(keycode) : KeyCodes::virtualKey(evdevCode(keycode));
}
} // namespace

std::optional<KeyEvent> keyEvent(const QKeyEvent &press, const X11Keyboard *keyboard)
{
    const auto key = virtualKey(XKeycode(press.nativeScanCode()), keyboard);
    // Escape must always work, whatever the user's layout makes of that key.
    if (!key || (isModifier(press) && *key != escape))
        return std::nullopt;
    // If the server's modifiers are known, use those: Qt's own depend on the layout.
    return KeyEvent{
        quint16(*key),
        keyboard ? keyboard->eventFlags(quint16(press.nativeModifiers()))
                 : converted(press.modifiers(), &ModifierForms::qt, &ModifierForms::eventFlag)};
}

} // namespace KeyTranslation
