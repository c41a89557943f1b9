// The link that asks for a Shortcut to be run. It may come from anywhere, also from a web page.
#pragma once

#include "foundation/Result.h"

#include <QByteArray>
#include <QString>

/// The name in a link of the form shortcuts://run-shortcut?name=…, of which nothing else is taken.
/// An error for any other link, and for what is no name of a file.
Result<QString> shortcutName(const QByteArray &link);
