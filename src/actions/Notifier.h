// Posts notifications, if the user permits them.
#pragma once

#include <QString>

struct Platform;

namespace Notifier
{

/// Returns at once and reports no errors. Asks the user for permission if that is still undecided.
void post(const QString &title, const QString &body, const Platform &platform);

} // namespace Notifier
