// Converts Qt's key presses to virtual key codes and event flags.
#pragma once

#include "platform/EventMonitor.h"

class QKeyEvent;
class X11Keyboard;

namespace KeyTranslation
{

/// Pass the X server's keyboard if the events come from a server whose keyboard is known, else
/// null. Nothing for keys that are modifiers in the user's layout, and for keys without a virtual
/// key code.
std::optional<KeyEvent> keyEvent(const QKeyEvent &press, const X11Keyboard *keyboard);

} // namespace KeyTranslation
