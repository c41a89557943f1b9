#include "model/ExportFile.h"

#include "model/LaunchEntry.h"

#include <nlohmann/json.hpp>

using namespace Qt::StringLiterals;

Json ExportItem::toJson() const
{
    Json json{
        {"name", name.toStdString()},
        {"kind", rawValue(kind).toStdString()},
        {"target", target.toStdString()},
        {"isEnabled", isEnabled},
    };
    if (keyCode)
        json["keyCode"] = *keyCode;
    if (modifiers)
        json["modifiers"] = *modifiers;
    return json;
}

Result<ExportItem> ExportItem::fromJson(const Json &json)
{
    const auto entry = LaunchEntry::fromJson(json, QUuid());
    if (!entry)
        return entry.error();
    const auto keyCode = JsonCoding::optionalUnsignedMember(json, "keyCode");
    if (!keyCode)
        return keyCode.error();
    const auto modifiers = JsonCoding::optionalUnsignedMember(json, "modifiers");
    if (!modifiers)
        return modifiers.error();
    return ExportItem{entry->name,      entry->kind, entry->target,
                      entry->isEnabled, *keyCode,    *modifiers};
}

QByteArray ExportFile::encoded() const
{
    Json list = Json::array();
    for (const ExportItem &item : items)
        list.push_back(item.toJson());
    return JsonCoding::writePretty({{"version", version}, {"items", std::move(list)}});
}

Result<ExportFile> ExportFile::decoded(const QByteArray &text)
{
    const auto json = JsonCoding::parse(text);
    if (!json)
        return json.error();
    const auto version = JsonCoding::integerMember(*json, "version");
    if (!version)
        return version.error();
    const auto list = JsonCoding::arrayMember(*json, "items");
    if (!list)
        return list.error();

    ExportFile file{*version, {}};
    for (const Json &record : **list) {
        auto item = ExportItem::fromJson(record);
        if (!item)
            return Error{u"Item %1: %2"_s.arg(QString::number(file.items.size() + 1),
                                              item.error().description)};
        file.items.append(std::move(item).value());
    }
    return file;
}
