// Maps virtual key codes to the keys of a Linux keyboard.
#pragma once

#include "platform/linux/keys/KeyNumbers.h"

#include <QList>
#include <optional>
#include <span>

namespace KeyCodes
{

struct PhysicalKey {
    VirtualKey virtualKey;
    EvdevCode evdevCode;
    /// The key's name in XKB key maps, at most four characters.
    const char *xkbName;
};

/// All keys that have a virtual key code.
std::span<const PhysicalKey> allKeys();

/// The keys of a virtual key code: usually one; two where a PC's Print, Scroll Lock and Pause stand
/// for F13 to F15; none for a number that no key has.
QList<PhysicalKey> physicalKeys(VirtualKey key);

/// The virtual key code of a key; nothing if it has none.
std::optional<VirtualKey> virtualKey(EvdevCode code);

} // namespace KeyCodes
