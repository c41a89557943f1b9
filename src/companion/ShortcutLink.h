// Parses links that run a Shortcut. A link may come from anywhere, including web pages.
#pragma once

#include "foundation/Result.h"

#include <QByteArray>
#include <QString>

/// The name in a link of the form shortcuts://run-shortcut?name=…; nothing else in the link is
/// used. An error for any other link, and for a name that cannot be a file name.
Result<QString> shortcutName(const QByteArray &link);
