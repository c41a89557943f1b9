// Selects the reader of the current desktop's shortcuts.
#pragma once

#include "platform/linux/desktopkeys/DesktopKeys.h"

#include <QProcessEnvironment>
#include <memory>

/// Null if the desktop is unknown. Call start() on it before reading the accelerators.
std::unique_ptr<DesktopKeys> makeDesktopKeys(const QProcessEnvironment &environment);
