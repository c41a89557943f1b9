// Key presses as Qt tells of them, in virtual key codes and event flags.
#pragma once

#include "platform/EventMonitor.h"

class QKeyEvent;
class X11Keyboard;

namespace KeyTranslation
{

/// The keyboard is the X server's, if events come from one whose keyboard is known. Nothing for
/// keys that are modifiers in the user's layout, and for keys without a virtual key code.
std::optional<KeyEvent> keyEvent(const QKeyEvent &press, const X11Keyboard *keyboard);

} // namespace KeyTranslation
