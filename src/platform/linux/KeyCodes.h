// Which key of a Linux keyboard a virtual key code means.
#pragma once

#include <QList>
#include <QtGlobal>

namespace KeyCodes
{

struct PhysicalKey {
    quint32 keyCode;
    quint16 evdevCode;
    /// The key's name in XKB key maps, at most four characters.
    const char *xkbName;
};

/// One key as a rule; two where a PC's Print, Scroll Lock and Pause stand for F13 to F15; none
/// for a code that no key has.
QList<PhysicalKey> physicalKeys(quint32 keyCode);

} // namespace KeyCodes
