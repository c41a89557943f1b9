// Tells whether the desktop uses a key combination for a shortcut of its own.
#pragma once

#include "hotkeys/KeyboardShortcuts.h"

class SymbolicHotkeys;

namespace KeyboardShortcuts
{

/// The modifier keys of a mask of KeyModifier bits, as EventFlag bits; other bits are dropped.
quint32 carbonToEventFlags(qint64 carbonModifiers);

/// Whether one of the desktop's enabled shortcuts has exactly these keys. False if it cannot be
/// asked.
bool isTakenBySystem(const Shortcut &shortcut, SymbolicHotkeys &service);

} // namespace KeyboardShortcuts
