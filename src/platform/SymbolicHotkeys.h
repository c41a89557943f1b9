// The desktop's own keyboard shortcuts, as they are in its settings now.
#pragma once

#include "platform/EventFlag.h"

#include <QList>
#include <QtGlobal>
#include <optional>

struct SymbolicHotkey {
    /// The virtual key code.
    qint64 code;
    /// An OR of EventFlag bits, perhaps with others.
    qint64 modifiers;
    bool isEnabled;
};

class SymbolicHotkeys
{
public:
    virtual ~SymbolicHotkeys() = default;

    /// Asks the desktop anew each time. Leaves out what it knows only a part of; nothing if it
    /// cannot be asked.
    virtual std::optional<QList<SymbolicHotkey>> copySymbolicHotkeys() = 0;
};
