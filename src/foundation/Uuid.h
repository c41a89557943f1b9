// Parses ids that come as text from outside.
#pragma once

#include <QString>
#include <QUuid>
#include <optional>

/// Accepts only the 36-character form without braces, in either case; nothing for any other text.
std::optional<QUuid> uuidFromText(const QString &text);
