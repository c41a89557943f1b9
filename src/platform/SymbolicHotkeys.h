// The desktop's own keyboard shortcuts, as they are in its settings now.
#pragma once

#include <QList>
#include <QtGlobal>
#include <optional>

/// The bits of the modifier keys in the flags that key events carry.
enum EventFlag : quint32 {
    shiftEventFlag = 0x20000,
    controlEventFlag = 0x40000,
    optionEventFlag = 0x80000,
    commandEventFlag = 0x100000,
};

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
