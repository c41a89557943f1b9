// What desktops call the actions of their keys.
#pragma once

#include <QString>
#include <optional>

/// The text as the name of an action: on one line and not too long to be kept. Nothing if it is
/// empty.
std::optional<QString> actionName(const QString &text);

/// The key of a setting in words, such as "Close window" for "close_window_key" or "close-window".
QString wordsOf(const QString &settingKey);
