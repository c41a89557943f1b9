// The three numberings of keys, kept apart: a number of one of them is some other key in another.
#pragma once

#include <QtGlobal>

/// What key combinations are stored with, and what the interfaces in platform/ call a key code.
enum class VirtualKey : quint32 {};

/// What key events carry on X11 and on Wayland. The X server's own numbers end at 255.
enum class XKeycode : quint32 {};

/// What linux/input-event-codes.h lists.
enum class EvdevCode : quint32 {};

/// What Linux's codes are moved by on Wayland, and by X servers that read Linux's devices.
constexpr quint32 evdevOffset = 8;

constexpr XKeycode xKeycode(EvdevCode code)
{
    return XKeycode(quint32(code) + evdevOffset);
}

constexpr EvdevCode evdevCode(XKeycode keycode)
{
    return EvdevCode(quint32(keycode) - evdevOffset);
}
