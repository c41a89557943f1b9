// One shortcut of the user: what it opens or runs. Its keys are kept apart, under its name.
#pragma once

#include "foundation/Json.h"
#include "hotkeys/KeyboardShortcuts.h"
#include "model/ActionKind.h"

#include <QList>
#include <QString>
#include <QUuid>

struct LaunchEntry {
    /// Never changes; all look-ups go by it.
    QUuid id = QUuid::createUuid();
    /// The user's label.
    QString name;
    ActionKind kind = ActionKind::app;
    /// A path for app and path, an address for website, the Shortcut's name for shortcut.
    QString target;
    bool isEnabled = true;

    bool operator==(const LaunchEntry &) const = default;

    /// The name under which the entry's key combination is stored and registered.
    KeyboardShortcuts::Name shortcutName() const;

    /// The target as rows show it: "No target" if empty, paths below the home folder with "~".
    QString targetDescription() const;

    /// All five members, in the order of the fields.
    OrderedJson toJson() const;

    /// Every member is required and must have its type; unknown members are ignored.
    static Result<LaunchEntry> fromJson(const Json &json);

    /// The same without the member for the id, which is given.
    static Result<LaunchEntry> fromJson(const Json &json, const QUuid &id);

    /// An array of entries; one bad record makes the whole list an error.
    static Result<QList<LaunchEntry>> listFromJson(const Json &json);
};
