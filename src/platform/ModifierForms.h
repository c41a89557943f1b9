// Maps the four modifier keys between their bit masks.
#pragma once

#include "platform/EventFlag.h"
#include "platform/KeyModifier.h"

#include <Qt>
#include <array>

struct ModifierForms {
    KeyModifier mask;
    EventFlag eventFlag;
    Qt::KeyboardModifier qt;
};

constexpr std::array<ModifierForms, 4> modifierForms{{
    {shiftKey, shiftEventFlag, Qt::ShiftModifier},
    {controlKey, controlEventFlag, Qt::ControlModifier},
    {optionKey, optionEventFlag, Qt::AltModifier},
    {commandKey, commandEventFlag, Qt::MetaModifier},
}};

/// Converts the modifier bits from one form to another. Other bits are dropped.
template <typename From, typename To>
constexpr quint32 converted(qint64 bits, From ModifierForms::*from, To ModifierForms::*to)
{
    quint32 result = 0;
    for (const ModifierForms &forms : modifierForms) {
        if (bits & forms.*from)
            result |= forms.*to;
    }
    return result;
}
