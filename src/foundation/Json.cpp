#include "foundation/Json.h"

#include "foundation/Text.h"

#include <limits>
#include <nlohmann/json.hpp>

using namespace Qt::StringLiterals;

namespace JsonCoding
{

namespace
{
/// Far more than the few levels of the program's own files. Each level of a hostile file takes a
/// hundred times the memory of its bracket, and copying many levels overflows the stack.
constexpr int maxDepth = 100;

/// Checked before parsing, because the library allocates the memory first. A parser callback would
/// make parsing quadratic in the length of an array.
bool isNestedTooDeeply(const QByteArray &text)
{
    int depth = 0;
    bool isInString = false;
    for (qsizetype place = 0; place < text.size(); ++place) {
        const char character = text[place];
        if (isInString && character == '\\')
            ++place;
        else if (character == '"')
            isInString = !isInString;
        else if (!isInString && (character == '[' || character == '{'))
            ++depth;
        else if (!isInString && (character == ']' || character == '}'))
            --depth;
        if (depth > maxDepth)
            return true;
    }
    return false;
}

Error memberError(const char *key, const QString &expected)
{
    return {
        u"The value %1 is missing or is not %2."_s.arg(quoted(QString::fromLatin1(key)), expected)};
}

/// The member. A missing one counts as null, which the readers below report as an error or as
/// absent.
const Json &member(const Json &object, const char *key)
{
    static const Json nothing;
    const auto found = object.find(key);
    return found == object.end() ? nothing : *found;
}
} // namespace

Result<Json> parse(const QByteArray &text)
{
    // The library takes a zero byte for the end of the text.
    if (text.contains('\0'))
        return Error{u"The text contains a zero byte."_s};
    if (isNestedTooDeeply(text))
        return Error{u"The text is nested too deeply."_s};
    try {
        return Json::parse(text.cbegin(), text.cend());
    } catch (const Json::exception &exception) {
        // The message quotes the last token, however long that is.
        return Error{shortened(QString::fromUtf8(exception.what()))};
    }
}

QByteArray write(const OrderedJson &value)
{
    return QByteArray::fromStdString(value.dump());
}

QByteArray writePretty(const Json &value)
{
    constexpr int indentation = 2;
    return QByteArray::fromStdString(value.dump(indentation));
}

Result<QString> textMember(const Json &object, const char *key)
{
    const Json &value = member(object, key);
    if (!value.is_string())
        return memberError(key, u"a text"_s);
    return QString::fromStdString(value.get_ref<const std::string &>());
}

Result<bool> booleanMember(const Json &object, const char *key)
{
    const Json &value = member(object, key);
    if (!value.is_boolean())
        return memberError(key, u"true or false"_s);
    return value.get<bool>();
}

Result<qint64> integerMember(const Json &object, const char *key)
{
    const Json &value = member(object, key);
    const bool fits = value.is_number_unsigned()
        ? value.get<quint64>() <= quint64(std::numeric_limits<qint64>::max())
        : value.is_number_integer();
    if (!fits)
        return memberError(key, u"a whole number"_s);
    return value.get<qint64>();
}

Result<std::optional<quint32>> optionalUnsignedMember(const Json &object, const char *key)
{
    if (member(object, key).is_null())
        return std::optional<quint32>();
    constexpr qint64 largest = std::numeric_limits<quint32>::max();
    const auto number = integerMember(object, key);
    if (!number || *number < 0 || *number > largest)
        return Error{u"The value %1 is not a whole number from 0 to %2."_s.arg(
            quoted(QString::fromLatin1(key)), QString::number(largest))};
    return std::optional(static_cast<quint32>(*number));
}

Result<const Json *> arrayMember(const Json &object, const char *key)
{
    const Json &value = member(object, key);
    if (!value.is_array())
        return memberError(key, u"an array"_s);
    return &value;
}

} // namespace JsonCoding
