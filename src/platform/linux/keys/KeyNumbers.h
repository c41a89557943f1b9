// The three numberings of keys, as distinct types: the same number means different keys in them.
#pragma once

#include <QtGlobal>

/// The numbering in stored key combinations and in the interfaces of platform/.
enum class VirtualKey : quint32 {};

/// The numbering of key events on X11 and on Wayland. The X server's own numbers end at 255.
enum class XKeycode : quint32 {};

/// The numbering of linux/input-event-codes.h.
enum class EvdevCode : quint32 {};

/// The difference between X key codes and Linux's codes, on Wayland and on X servers that read
/// Linux's devices.
constexpr quint32 evdevOffset = 8;

constexpr XKeycode xKeycode(EvdevCode code)
{
    return XKeycode(quint32(code) + evdevOffset);
}

constexpr EvdevCode evdevCode(XKeycode keycode)
{
    return EvdevCode(quint32(keycode) - evdevOffset);
}
