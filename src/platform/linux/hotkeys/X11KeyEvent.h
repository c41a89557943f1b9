// A key event of the X server for a grabbed key.
#pragma once

#include "platform/linux/hotkeys/AutoRepeatFilter.h"

#include <QtGlobal>
#include <optional>
#include <xcb/xcb.h>

/// Comes from a core grab or an XInput 2 grab.
struct X11KeyEvent {
    XKeycode key;
    /// The modifiers; from a core grab, other state bits too.
    quint16 state;
    /// The server time in ms. It may wrap.
    quint32 time;
    /// How the press was reported; nothing for a release.
    std::optional<KeyDown> down;
    /// The keyboard on which an XInput 2 grab is active; nothing for a core grab.
    std::optional<quint16> keyboard = {};

    /// Reads a key event; nothing if the event is of another kind.
    static std::optional<X11KeyEvent> read(const xcb_generic_event_t &event);

    /// The modifiers as a passive grab compares them: without pointer buttons and the layout group.
    quint16 grabbedModifiers() const { return state & 0xff; }
};
