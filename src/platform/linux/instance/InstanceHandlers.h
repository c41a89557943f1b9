// What the program does for requests of other programs, and what must be known for that.
#pragma once

#include "platform/linux/layout/KeyRepeat.h"

#include <QUuid>
#include <functional>

struct InstanceHandlers {
    /// Called when the program is started again or activated, once for all requests that came
    /// together.
    std::function<void()> activate;
    /// Returns whether there is such an entry.
    std::function<bool(const QUuid &)> isKnown;
    /// Runs the entry as its key press would, if it still exists.
    std::function<void(const QUuid &)> fire;
    /// Returns how held keys repeat in this session.
    std::function<KeyRepeat()> keyRepeat;
    /// Returns whether the user is recording keys, which must run nothing.
    std::function<bool()> isRecording;
};
