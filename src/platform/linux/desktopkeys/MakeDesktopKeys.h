// Where the running desktop keeps its shortcuts.
#pragma once

#include "platform/linux/desktopkeys/DesktopKeys.h"

#include <QProcessEnvironment>
#include <memory>

/// Null if the desktop is none that we know. To be started before it tells anything.
std::unique_ptr<DesktopKeys> makeDesktopKeys(const QProcessEnvironment &environment);
