// Knows which key combinations others hold, so that they do not reach us.
#pragma once

#include "platform/linux/keys/KeyNumbers.h"

#include <QObject>

class TakenKeys : public QObject
{
    Q_OBJECT

public:
    /// Answers at once from what is known so far.
    virtual bool isHeldElsewhere(VirtualKey key, quint32 modifiers) = 0;

    /// Marks all answers as out of date, and retries the refused registrations.
    virtual void invalidate() = 0;

Q_SIGNALS:
    /// Emitted when some answers differ, or may differ, from those given before.
    void changed();
};
