// Which key of a Linux keyboard a virtual key code means.
#pragma once

#include <QList>
#include <QtGlobal>
#include <optional>
#include <span>

namespace KeyCodes
{

struct PhysicalKey {
    quint32 keyCode;
    quint16 evdevCode;
    /// The key's name in XKB key maps, at most four characters.
    const char *xkbName;
};

/// What Linux's event codes are moved by wherever X servers and Wayland use them.
constexpr quint32 evdevOffset = 8;

/// All keys that have a virtual key code.
std::span<const PhysicalKey> allKeys();

/// One key as a rule; two where a PC's Print, Scroll Lock and Pause stand for F13 to F15; none
/// for a code that no key has.
QList<PhysicalKey> physicalKeys(quint32 keyCode);

/// The virtual key code of Linux's event code; nothing if that key has none.
std::optional<quint16> keyCode(quint32 evdevCode);

} // namespace KeyCodes
