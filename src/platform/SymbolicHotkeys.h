// The keys that the desktop's own shortcuts and other programs use.
#pragma once

#include "platform/EventFlag.h"

#include <QList>
#include <QObject>
#include <QString>
#include <optional>

struct SymbolicHotkey {
    /// The virtual key code.
    qint64 code;
    /// An OR of EventFlag bits; other bits may be set too.
    qint64 modifiers;
    bool isEnabled;
    /// What the desktop calls the action, on one line; nothing if it has no name for it.
    std::optional<QString> action = {};

    bool operator==(const SymbolicHotkey &) const = default;
};

/// Answers at once from what is known so far.
class SymbolicHotkeys : public QObject
{
    Q_OBJECT

public:
    /// The shortcuts in the desktop's settings. Shortcuts that are only partly known are left out.
    /// Nothing if the desktop cannot be asked or has not answered yet.
    virtual std::optional<QList<SymbolicHotkey>> copySymbolicHotkeys() = 0;

    /// Whether the desktop uses the Super key alone in a way that keeps combinations without
    /// another modifier from us. Needs copySymbolicHotkeys() to have answered.
    virtual bool keepsSuperKey() = 0;

    /// Whether another program has grabbed a virtual key code with a mask of KeyModifier bits, so
    /// that the combination does not reach us. False where that cannot be known.
    virtual bool isHeldElsewhere(quint32 keyCode, quint32 modifiers) = 0;

Q_SIGNALS:
    /// Emitted when answers may have changed.
    void changed();
};
