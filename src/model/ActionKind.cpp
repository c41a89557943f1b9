#include "model/ActionKind.h"

#include "foundation/Text.h"

#include <algorithm>
#include <nlohmann/json.hpp>

using namespace Qt::StringLiterals;

QString rawValue(ActionKind kind)
{
    switch (kind) {
    case ActionKind::app:
        return u"app"_s;
    case ActionKind::path:
        return u"path"_s;
    case ActionKind::website:
        return u"website"_s;
    case ActionKind::shortcut:
        return u"shortcut"_s;
    }
    Q_UNREACHABLE();
}

std::optional<ActionKind> actionKind(const QString &raw)
{
    const auto found = std::ranges::find(ActionKinds::allCases, raw, rawValue);
    return found == ActionKinds::allCases.end() ? std::nullopt : std::optional(*found);
}

Result<ActionKind> actionKindMember(const Json &object, const char *key)
{
    const auto raw = JsonCoding::textMember(object, key);
    if (!raw)
        return raw.error();
    const auto kind = actionKind(*raw);
    if (!kind)
        return Error{u"%1 is not a kind of entry."_s.arg(quoted(shortened(*raw)))};
    return *kind;
}

QString title(ActionKind kind)
{
    switch (kind) {
    case ActionKind::app:
        return u"Open an app"_s;
    case ActionKind::path:
        return u"Open a folder or file"_s;
    case ActionKind::website:
        return u"Open a website"_s;
    case ActionKind::shortcut:
        return u"Run a Shortcut"_s;
    }
    Q_UNREACHABLE();
}
