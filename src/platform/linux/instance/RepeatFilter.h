// Tells the presses from the repeats in the requests of desktops that call again and again while
// keys are held.
#pragma once

#include "platform/linux/layout/KeyRepeat.h"

#include <QList>
#include <QUuid>
#include <chrono>
#include <map>
#include <optional>

/// Knows no clock and no event loop: it is told the time of each hit, and asks to be woken. The
/// hits of each entry are judged by themselves.
class RepeatFilter
{
public:
    /// Counted from any moment that stays the same.
    using Time = std::chrono::milliseconds;

    enum class Hit {
        press,
        /// The next wake-up tells whether it is a press, unless another hit comes before.
        undecided,
        /// So is the hit before it, if that was undecided.
        repeat,
    };

    Hit hit(const QUuid &entry, Time now, const KeyRepeat &keyRepeat);

    /// The entries whose undecided hit is a press, because no other hit followed.
    QList<QUuid> wakeUp(Time now);

    /// When to call wakeUp(); nothing while all entries rest.
    std::optional<Time> nextWakeUp() const;

private:
    struct Row {
        Time latestHit{};
        /// When no hit has come for one gap; nothing after that.
        std::optional<Time> gapEnd;
        bool isHeld = false;
    };

    void forgetRested(Time now, const KeyRepeat &keyRepeat);

    std::map<QUuid, Row> m_rows;
};
