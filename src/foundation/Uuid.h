// Reads ids that come as texts from outside.
#pragma once

#include <QString>
#include <QUuid>
#include <optional>

/// Only the form of 36 characters without braces, in either case; nothing for any other text.
std::optional<QUuid> uuidFromText(const QString &text);
