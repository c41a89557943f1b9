#include "model/LaunchEntry.h"

#include "foundation/Text.h"
#include "foundation/Uuid.h"

#include <QDir>
#include <nlohmann/json.hpp>

using namespace Qt::StringLiterals;

namespace
{
/// The canonical text form: upper case, hyphens, no braces.
QString canonicalText(const QUuid &id)
{
    // Convert as bytes: long lists call this often, and Unicode upper-casing is slower.
    return QString::fromLatin1(id.toByteArray(QUuid::WithoutBraces).toUpper());
}

QString abbreviatingHome(const QString &path)
{
    const QString home = QDir::homePath();
    if (home == u"/" || (path != home && !path.startsWith(home + u'/')))
        return path;
    return u'~' + path.sliced(home.size());
}
} // namespace

KeyboardShortcuts::Name LaunchEntry::shortcutName() const
{
    return {u"corvane-"_s + canonicalText(id)};
}

QString LaunchEntry::targetDescription() const
{
    if (target.isEmpty())
        return u"No target"_s;
    if (kind == ActionKind::app || kind == ActionKind::path)
        return abbreviatingHome(target);
    return target;
}

OrderedJson LaunchEntry::toJson() const
{
    return {
        {"id", canonicalText(id).toStdString()},
        {"name", name.toStdString()},
        {"kind", rawValue(kind).toStdString()},
        {"target", target.toStdString()},
        {"isEnabled", isEnabled},
    };
}

Result<LaunchEntry> LaunchEntry::fromJson(const Json &json)
{
    const auto idText = JsonCoding::textMember(json, "id");
    if (!idText)
        return idText.error();
    const auto id = uuidFromText(*idText);
    if (!id)
        return Error{u"%1 is not an entry's id."_s.arg(quoted(shortened(*idText)))};
    return fromJson(json, *id);
}

Result<LaunchEntry> LaunchEntry::fromJson(const Json &json, const QUuid &id)
{
    const auto name = JsonCoding::textMember(json, "name");
    if (!name)
        return name.error();
    const auto kind = actionKindMember(json, "kind");
    if (!kind)
        return kind.error();
    const auto target = JsonCoding::textMember(json, "target");
    if (!target)
        return target.error();
    const auto isEnabled = JsonCoding::booleanMember(json, "isEnabled");
    if (!isEnabled)
        return isEnabled.error();
    return LaunchEntry{id, *name, *kind, *target, *isEnabled};
}

Result<QList<LaunchEntry>> LaunchEntry::listFromJson(const Json &json)
{
    if (!json.is_array())
        return Error{u"The list is not an array of entries."_s};
    QList<LaunchEntry> entries;
    for (const Json &record : json) {
        auto entry = fromJson(record);
        if (!entry)
            return entry.error();
        entries.append(std::move(entry).value());
    }
    return entries;
}
