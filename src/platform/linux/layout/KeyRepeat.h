// How held keys repeat.
#pragma once

#include <chrono>

struct KeyRepeat {
    /// The usual values, for sessions that do not tell theirs.
    std::chrono::milliseconds delay{600};
    std::chrono::milliseconds interval{40};

    bool operator==(const KeyRepeat &) const = default;
};
