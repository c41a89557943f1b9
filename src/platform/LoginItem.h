// Whether the desktop starts the program when its user logs in.
#pragma once

#include "foundation/Result.h"

#include <optional>

enum class LoginItemStatus {
    notRegistered = 0,
    enabled = 1,
    /// Registered, but switched off by the user in the desktop's own settings.
    requiresApproval = 2,
    /// Registered, but the program that it would start is missing.
    notFound = 3,
};

/// The desktop keeps the state; it may change at any time.
class LoginItem
{
public:
    virtual ~LoginItem() = default;

    virtual LoginItemStatus status() const = 0;

    /// Makes the desktop start the running program at login; replaces an earlier registration.
    virtual std::optional<Error> registerItem() = 0;

    /// Succeeds also if nothing is registered.
    virtual std::optional<Error> unregisterItem() = 0;
};
