// The user-defaults keys of settings that several parts of the program know.
#pragma once

#include <QLatin1StringView>

namespace DefaultsKeys
{

/// Whether successful runs are told; true when absent.
inline constexpr QLatin1StringView showRunNotification("showRunNotification");

/// Whether the user has dismissed the welcome; false when absent.
inline constexpr QLatin1StringView hasSeenWelcome("hasSeenWelcome");

} // namespace DefaultsKeys
