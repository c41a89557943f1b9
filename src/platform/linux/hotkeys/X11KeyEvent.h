// What the X server reports of the keys that we have grabbed.
#pragma once

#include "platform/linux/hotkeys/AutoRepeatFilter.h"

#include <QtGlobal>
#include <optional>
#include <xcb/xcb.h>

/// The event of a core grab or of an XInput 2 grab.
struct X11KeyEvent {
    XKeycode key;
    /// The modifiers, and with a core grab more than those.
    quint16 state;
    /// The server's, in ms. It may wrap.
    quint32 time;
    /// Nothing if the key was released.
    std::optional<KeyDown> down;
    /// Which keyboard an XInput 2 grab is active on; nothing if it is a core grab.
    std::optional<quint16> keyboard = {};

    /// Nothing if it is no key event.
    static std::optional<X11KeyEvent> read(const xcb_generic_event_t &event);

    /// The modifiers as a passive grab compares them: neither pointer buttons nor the group of the
    /// layout.
    quint16 grabbedModifiers() const { return state & 0xff; }
};
