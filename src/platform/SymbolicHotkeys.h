// Which keys the desktop's own shortcuts and other programs use.
#pragma once

#include "platform/EventFlag.h"
#include "platform/Registration.h"

#include <QList>
#include <QtGlobal>
#include <functional>
#include <optional>

struct SymbolicHotkey {
    /// The virtual key code.
    qint64 code;
    /// An OR of EventFlag bits, perhaps with others.
    qint64 modifiers;
    bool isEnabled;

    bool operator==(const SymbolicHotkey &) const = default;
};

/// Answers at once, with what it has heard by then; the observers are told of news.
class SymbolicHotkeys
{
public:
    virtual ~SymbolicHotkeys() = default;

    /// The desktop's shortcuts, as they are in its settings. Leaves out what it knows only a part
    /// of; nothing if the desktop cannot be asked, or has not answered.
    virtual std::optional<QList<SymbolicHotkey>> copySymbolicHotkeys() = 0;

    /// Whether another program holds a virtual key code with a mask of KeyModifier bits, so that it
    /// does not reach us. False where that cannot be known.
    virtual bool isHeldElsewhere(quint32 keyCode, quint32 modifiers) = 0;

    /// The observer is called when answers may have changed, until the returned value ends.
    virtual Registration addObserver(std::function<void()> observer) = 0;
};
