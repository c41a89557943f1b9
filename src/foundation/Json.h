// The only code that calls the JSON library: it turns the library's exceptions into error values.
#pragma once

#include "foundation/Result.h"

#include <QByteArray>
#include <QString>
#include <nlohmann/json_fwd.hpp>
#include <optional>

/// For reading, and for writing with members sorted by key.
using Json = nlohmann::json;

/// For writing only: keeps members in order, but looks up keys by a linear search.
using OrderedJson = nlohmann::ordered_json;

namespace JsonCoding
{

/// Parses exactly one JSON text. Anything else is an error, including invalid UTF-8 and excessive
/// nesting. A leading UTF-8 byte order mark is accepted.
Result<Json> parse(const QByteArray &text);

/// Compact, with the members in their order.
QByteArray write(const OrderedJson &value);

/// Indented, with each member on a line of its own, sorted by key.
QByteArray writePretty(const Json &value);

/// The functions below return an error if the member is missing or has another type.
Result<QString> textMember(const Json &object, const char *key);
Result<bool> booleanMember(const Json &object, const char *key);

/// Accepts only whole numbers that fit into a signed 64-bit integer: 12.5, true and "12" are
/// errors.
Result<qint64> integerMember(const Json &object, const char *key);

/// Accepts only whole numbers that fit into an unsigned 32-bit integer; nothing if the member is
/// missing or null.
Result<std::optional<quint32>> optionalUnsignedMember(const Json &object, const char *key);

/// The returned array belongs to the object.
Result<const Json *> arrayMember(const Json &object, const char *key);

} // namespace JsonCoding
