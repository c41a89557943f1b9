// Posts a notification, if the user lets us.
#pragma once

#include <QString>

struct Platform;

namespace Notifier
{

/// Fire and forget: returns at once, and what goes wrong is silent. The user is asked for
/// permission the first time that it is not settled yet.
void post(const QString &title, const QString &body, const Platform &platform);

} // namespace Notifier
