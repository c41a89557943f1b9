// What comes of claiming the session's one place for the program.
#pragma once

#include <chrono>

enum class InstanceClaim {
    /// It is ours, until the program ends, however it ends.
    first,
    /// Another instance has it, and has taken over what we were started for.
    handedOver,
    /// Another instance has it, and does not answer.
    unanswered,
    /// Nobody can claim it in this way here.
    impossible,
};

/// How long the other instance may take to answer: it may be busy with its own start.
inline constexpr std::chrono::seconds instancePatience(5);
