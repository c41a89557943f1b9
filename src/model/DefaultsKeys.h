// The user-defaults keys of settings that several parts of the program use.
#pragma once

#include <QLatin1StringView>

namespace DefaultsKeys
{

/// Whether successful runs are notified; true if absent.
inline constexpr QLatin1StringView showRunNotification("showRunNotification");

/// Whether open applications are brought to the front instead of being started again; true if
/// absent.
inline constexpr QLatin1StringView bringToFront("bringToFront");

/// Whether the user has dismissed the welcome; false if absent.
inline constexpr QLatin1StringView hasSeenWelcome("hasSeenWelcome");

/// Whether key combinations are shown with the signs of a Mac's keys; false if absent.
inline constexpr QLatin1StringView showMacKeySigns("showMacKeySigns");

} // namespace DefaultsKeys
