// When the X server repeats a key that is held.
#pragma once

#include <chrono>

/// The defaults are those of X servers.
struct AutoRepeat {
    /// From the press to the first repeat.
    std::chrono::milliseconds delay{660};
    /// From each repeat to the next.
    std::chrono::milliseconds interval{40};
};
