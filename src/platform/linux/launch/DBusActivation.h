// Starts applications by a message on the session bus.
#pragma once

#include "foundation/Result.h"
#include "platform/linux/base/StartupTokens.h"

#include <QString>
#include <QUrl>
#include <functional>
#include <optional>

namespace DBusActivation
{

/// Whether there is a bus and the name of the app's .desktop file is a valid bus name.
bool isPossible(const QString &app);

/// Activates the app, or has it open the target unless that is empty. The completion is called
/// later, with the bus's answer.
void open(const QString &app, const QUrl &target, const StartupTokens &tokens,
          std::function<void(std::optional<Error>)> completion);

} // namespace DBusActivation
