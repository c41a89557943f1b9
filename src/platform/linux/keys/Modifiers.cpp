#include "platform/linux/keys/Modifiers.h"

#include "platform/EventFlag.h"

namespace Modifiers
{

quint32 eventFlags(Qt::KeyboardModifiers modifiers)
{
    quint32 flags = 0;
    if (modifiers & Qt::MetaModifier)
        flags |= commandEventFlag;
    if (modifiers & Qt::AltModifier)
        flags |= optionEventFlag;
    if (modifiers & Qt::ShiftModifier)
        flags |= shiftEventFlag;
    if (modifiers & Qt::ControlModifier)
        flags |= controlEventFlag;
    return flags;
}

} // namespace Modifiers
