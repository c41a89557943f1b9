// Which keys the desktop's own shortcuts and other programs use.
#pragma once

#include "platform/EventFlag.h"

#include <QList>
#include <QObject>
#include <optional>

struct SymbolicHotkey {
    /// The virtual key code.
    qint64 code;
    /// An OR of EventFlag bits, perhaps with others.
    qint64 modifiers;
    bool isEnabled;

    bool operator==(const SymbolicHotkey &) const = default;
};

/// Answers at once, with what it has heard by then.
class SymbolicHotkeys : public QObject
{
    Q_OBJECT

public:
    /// The desktop's shortcuts, as they are in its settings. Leaves out what it knows only a part
    /// of; nothing if the desktop cannot be asked, or has not answered.
    virtual std::optional<QList<SymbolicHotkey>> copySymbolicHotkeys() = 0;

    /// Whether another program holds a virtual key code with a mask of KeyModifier bits, so that it
    /// does not reach us. False where that cannot be known.
    virtual bool isHeldElsewhere(quint32 keyCode, quint32 modifiers) = 0;

Q_SIGNALS:
    /// Answers may have changed.
    void changed();
};
