// What an entry does when its keys are pressed.
#pragma once

#include "foundation/Json.h"

#include <QString>
#include <array>
#include <optional>

enum class ActionKind {
    app,
    path,
    website,
    shortcut,
};

namespace ActionKinds
{
/// In the order in which the kinds are offered to the user.
inline constexpr std::array allCases{
    ActionKind::app,
    ActionKind::path,
    ActionKind::website,
    ActionKind::shortcut,
};
} // namespace ActionKinds

/// The text that stands for the kind in files, and that identifies it.
QString rawValue(ActionKind kind);

/// The kind with exactly that raw value (case matters), or nothing.
std::optional<ActionKind> actionKind(const QString &rawValue);

/// The kind whose raw value the member of the object is; an error where it is missing or is not
/// one.
Result<ActionKind> actionKindMember(const Json &object, const char *key);

/// The label that the user sees, such as "Open an app".
QString title(ActionKind kind);
