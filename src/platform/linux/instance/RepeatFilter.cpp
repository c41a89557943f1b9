#include "platform/linux/instance/RepeatFilter.h"

#include <algorithm>

using namespace std::chrono_literals;

namespace
{
/// How late a first repeat may come, and how late each further one: each of them starts a program,
/// which calls us.
constexpr auto firstRepeatLateness = 200ms;
constexpr auto repeatLateness = 50ms;
/// Quick repeats come less evenly than their interval says.
constexpr RepeatFilter::Time shortestGap = 80ms;

RepeatFilter::Time gap(const KeyRepeat &keyRepeat)
{
    return std::max(shortestGap, keyRepeat.interval + repeatLateness);
}
} // namespace

RepeatFilter::Hit RepeatFilter::hit(const QUuid &entry, Time now, const KeyRepeat &keyRepeat)
{
    forgetRested(now, keyRepeat);
    const auto [found, isFirst] = m_rows.try_emplace(entry);
    Row &row = found->second;
    row.latestHit = now;
    if (isFirst)
        return Hit::press;
    // A hit is in time if it is heard before the wake-up: a busy program hears both late.
    row.isHeld = row.gapEnd.has_value();
    row.gapEnd = now + gap(keyRepeat);
    return row.isHeld ? Hit::repeat : Hit::undecided;
}

QList<QUuid> RepeatFilter::wakeUp(Time now)
{
    QList<QUuid> presses;
    for (auto &[entry, row] : m_rows) {
        if (!row.gapEnd || *row.gapEnd > now)
            continue;
        row.gapEnd.reset();
        if (!row.isHeld)
            presses << entry;
    }
    return presses;
}

std::optional<RepeatFilter::Time> RepeatFilter::nextWakeUp() const
{
    std::optional<Time> next;
    for (const auto &[entry, row] : m_rows) {
        if (row.gapEnd)
            next = std::min(next.value_or(*row.gapEnd), *row.gapEnd);
    }
    return next;
}

/// Forgets the entries for which a hit now cannot be a first repeat.
void RepeatFilter::forgetRested(Time now, const KeyRepeat &keyRepeat)
{
    const Time rested = now - keyRepeat.delay - firstRepeatLateness;
    std::erase_if(m_rows, [rested](const auto &item) {
        return !item.second.gapEnd && item.second.latestHit < rested;
    });
}
