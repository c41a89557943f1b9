// The result of the attempt to become the only instance.
#pragma once

enum class InstanceClaim {
    /// We are the only instance, until the program exits, however it does.
    first,
    /// Another instance is running and has taken over the request that we were started for.
    handedOver,
    /// Another instance is running and does not answer.
    unanswered,
    /// Another instance is running in another session of the user.
    elsewhere,
};
