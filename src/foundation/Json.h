// The one place that meets the JSON library: its exceptions end here as error values.
#pragma once

#include "foundation/Result.h"

#include <QByteArray>
#include <QString>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>

/// What is read, and what is written with its members sorted by key.
using Json = nlohmann::json;

/// For writing only: keeps members in their order, but searches all of them for a key.
using OrderedJson = nlohmann::ordered_json;

namespace JsonCoding
{

/// Reads one JSON text. Anything that is not exactly one, invalid UTF-8 included, is an error, and
/// so is one that is nested absurdly; a byte order mark of UTF-8 at its start is none.
Result<Json> parse(const QByteArray &text);

/// Compact, members in their order.
QByteArray write(const OrderedJson &value);

/// Each member on a line of its own, sorted by key.
QByteArray writePretty(const Json &value);

/// The text as a value of either kind.
std::string fromText(const QString &text);

/// The members below are errors when they are missing or of another type.
Result<QString> textMember(const Json &object, const char *key);
Result<bool> booleanMember(const Json &object, const char *key);

/// Whole numbers only: 12.5, true, "12" and what does not fit into 64 signed bits are errors.
Result<qint64> integerMember(const Json &object, const char *key);

/// Whole numbers of 32 bits without a sign only; nothing where the member is missing or null.
Result<std::optional<quint32>> optionalUnsignedMember(const Json &object, const char *key);

/// Lies in the object.
Result<const Json *> arrayMember(const Json &object, const char *key);

} // namespace JsonCoding
