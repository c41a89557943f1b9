// The modifier bits of key events and of the desktop's shortcuts.
#pragma once

#include <QtGlobal>

/// The bits of the modifier keys in an event's flags.
enum EventFlag : quint32 {
    shiftEventFlag = 0x20000,
    controlEventFlag = 0x40000,
    optionEventFlag = 0x80000,
    commandEventFlag = 0x100000,
};
