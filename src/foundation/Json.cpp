#include "foundation/Json.h"

#include "foundation/Text.h"

#include <limits>

using namespace Qt::StringLiterals;

namespace JsonCoding
{

namespace
{
Error memberError(const char *key, const QString &expected)
{
    return {
        u"The value %1 is missing or is not %2."_s.arg(quoted(QString::fromLatin1(key)), expected)};
}

/// The member, or null where there is none, which no reader here accepts. Never a copy: copying
/// recurses, and a member may be nested too deeply for the stack.
const Json &member(const Json &object, const char *key)
{
    static const Json nothing;
    const auto found = object.find(key);
    return found == object.end() ? nothing : *found;
}
} // namespace

Result<Json> parse(const QByteArray &text)
{
    try {
        return Json::parse(text.cbegin(), text.cend());
    } catch (const Json::exception &exception) {
        return Error{QString::fromUtf8(exception.what())};
    }
}

QByteArray write(const Json &value)
{
    return QByteArray::fromStdString(value.dump());
}

Json fromText(const QString &text)
{
    return text.toStdString();
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

} // namespace JsonCoding
