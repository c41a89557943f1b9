// Checks whether the desktop or another program uses a key combination.
#pragma once

#include "hotkeys/KeyboardShortcuts.h"
#include "platform/KeyUser.h"

class SymbolicHotkeys;

namespace KeyboardShortcuts
{

/// Converts a mask of KeyModifier bits to EventFlag bits; other bits are dropped.
quint32 carbonToEventFlags(qint64 carbonModifiers);

/// Whether one of the desktop's enabled shortcuts has exactly these keys, the desktop keeps the
/// Super key, or another program has grabbed them. False if neither can be determined.
bool isTakenBySystem(const Shortcut &shortcut, SymbolicHotkeys &service);

/// Who uses the keys, if isTakenBySystem(): the desktop's first action that does, before other
/// programs.
std::optional<KeyUser> userOfKeys(const Shortcut &shortcut, SymbolicHotkeys &service);

} // namespace KeyboardShortcuts
