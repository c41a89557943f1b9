// Whether the desktop starts the program when its user logs in.
#pragma once

#include "foundation/Result.h"

#include <optional>

enum class LoginItemStatus {
    notRegistered = 0,
    enabled = 1,
    /// It is registered, but the user has switched it off in the desktop's own settings.
    requiresApproval = 2,
    /// It is registered, but what it would start is not there.
    notFound = 3,
};

/// The desktop keeps the state; it may change at any time.
class LoginItem
{
public:
    virtual ~LoginItem() = default;

    virtual LoginItemStatus status() const = 0;

    /// Has the running program started at login, whatever was registered before.
    virtual std::optional<Error> registerItem() = 0;

    /// No error if nothing is registered.
    virtual std::optional<Error> unregisterItem() = 0;
};
