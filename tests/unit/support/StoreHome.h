// A store on fakes, of a user who already has a list.
#pragma once

#include "fakes/FakePlatform.h"
#include "hotkeys/HotkeyCenter.h"
#include "store/ShortcutStore.h"

struct StoreHome {
    explicit StoreHome(const QList<LaunchEntry> &list = {})
    {
        if (!list.isEmpty() && EntriesFile(platform.applicationSupport.path()).write(list))
            qFatal("cannot write the list");
        store.emplace(platform.services, center);
    }

    /// Which the store does not announce.
    void setKeys(const LaunchEntry &entry, const KeyboardShortcuts::Shortcut &keys)
    {
        store->setShortcut(keys, entry.shortcutName());
    }

    FakePlatform platform;
    HotkeyCenter center{platform.hotkeys, platform.userDefaults};
    std::optional<ShortcutStore> store;
};
