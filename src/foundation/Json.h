// The one place that meets the JSON library: its exceptions end here as error values.
#pragma once

#include "foundation/Result.h"

#include <QByteArray>
#include <QString>
#include <nlohmann/json.hpp>

/// Keeps members in the order in which they were written.
using Json = nlohmann::ordered_json;

namespace JsonCoding
{

/// Reads one JSON text. Anything that is not exactly one, invalid UTF-8 included, is an error.
Result<Json> parse(const QByteArray &text);

/// Compact, members in their order.
QByteArray write(const Json &value);

Json fromText(const QString &text);

/// The members below are errors when they are missing or of another type.
Result<QString> textMember(const Json &object, const char *key);
Result<bool> booleanMember(const Json &object, const char *key);

/// Whole numbers only: 12.5, true, "12" and what does not fit into 64 signed bits are errors.
Result<qint64> integerMember(const Json &object, const char *key);

} // namespace JsonCoding
