#include "settings/Preferences.h"

#include "model/DefaultsKeys.h"
#include "platform/Platform.h"
#include "platform/UserDefaults.h"
#include "platform/Workspace.h"
#include "store/ShortcutStore.h"

using namespace Qt::StringLiterals;
using namespace viewkit;

namespace
{
/// A check box for a stored value, which the store reads with its default.
Item preference(const QString &label, UserDefaults &defaults, QLatin1StringView key,
                bool (*isOn)(const UserDefaults &defaults), Action onChange = {})
{
    return checkBox(label,
                    {
                        .get = [&defaults, isOn] { return isOn(defaults); },
                        .set =
                            [&defaults, key, onChange = std::move(onChange)](bool on) {
                                defaults.setBoolean(key, on);
                                if (onChange)
                                    onChange();
                            },
                    });
}
} // namespace

Item preferences(const Platform &platform, ShortcutStore &store)
{
    UserDefaults &defaults = platform.userDefaults;
    return Column{
        spacing(8),
        preference(u"Show a small notification when a shortcut runs"_s, defaults,
                   DefaultsKeys::showRunNotification, &ShortcutStore::showRunNotification),
        shownWhen([&workspace = platform.workspace] { return workspace.canActivate(); },
                  preference(u"Bring open apps to the front"_s, defaults,
                             DefaultsKeys::bringToFront, &ShortcutStore::bringToFront)),
        // The menu shows keys too.
        preference(u"Show keys with Mac signs (⌃⌥⇧⌘)"_s, defaults, DefaultsKeys::showMacKeySigns,
                   &ShortcutStore::showMacKeySigns, [&store] { store.announceChange(); }),
    };
}
