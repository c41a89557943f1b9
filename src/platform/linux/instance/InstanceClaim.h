// What comes of claiming the one place for the program.
#pragma once

enum class InstanceClaim {
    /// It is ours, until the program ends, however it ends.
    first,
    /// Another instance has it, and has taken over what we were started for.
    handedOver,
    /// Another instance has it, and does not answer.
    unanswered,
    /// Another instance has it, in another session of the user.
    elsewhere,
};
