// Starts applications that are started by a message on the session bus.
#pragma once

#include "foundation/Result.h"
#include "platform/linux/base/StartupTokens.h"

#include <QString>
#include <QUrl>
#include <functional>
#include <optional>

namespace DBusActivation
{

/// Whether there is a bus, and the name of the app's .desktop file can be a name on it.
bool isPossible(const QString &app);

/// Activates the app, or has it open the target if that is not empty, and completes with the bus's
/// answer, later.
void open(const QString &app, const QUrl &target, const StartupTokens &tokens,
          std::function<void(std::optional<Error>)> completion);

} // namespace DBusActivation
