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
/// In the order in which the user interface offers them.
inline constexpr std::array allCases{
    ActionKind::app,
    ActionKind::path,
    ActionKind::website,
    ActionKind::shortcut,
};
} // namespace ActionKinds

/// The kind's identifier, also used in files.
QString rawValue(ActionKind kind);

/// The kind with exactly this raw value (case matters), or nothing.
std::optional<ActionKind> actionKind(const QString &rawValue);

/// The kind named by the object's member; an error if the member is missing or names no kind.
Result<ActionKind> actionKindMember(const Json &object, const char *key);

/// The label that the user sees, such as "Open an app".
QString title(ActionKind kind);
