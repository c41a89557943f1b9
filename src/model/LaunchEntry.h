// One shortcut of the user: what it opens or runs. Its key combination is stored separately, under
// shortcutName().
#pragma once

#include "foundation/Json.h"
#include "hotkeys/KeyboardShortcuts.h"
#include "model/ActionKind.h"

#include <QList>
#include <QString>
#include <QUuid>

struct LaunchEntry {
    /// Never changes; all look-ups use it.
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

    /// The target as list rows show it: "No target" if empty, and "~" for the home folder in paths.
    QString targetDescription() const;

    /// Writes all five members in the order of the fields.
    OrderedJson toJson() const;

    /// Every member is required and must have its type; unknown members are ignored.
    static Result<LaunchEntry> fromJson(const Json &json);

    /// Like the above, but uses the given id instead of the object's.
    static Result<LaunchEntry> fromJson(const Json &json, const QUuid &id);

    /// Reads an array of entries; one invalid entry makes the whole list an error.
    static Result<QList<LaunchEntry>> listFromJson(const Json &json);
};
