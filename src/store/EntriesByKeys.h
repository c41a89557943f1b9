// Finds the entries that have a combination; reads all combinations once, and again only when one
// of them or the list has changed.
#pragma once

#include "model/LaunchEntry.h"

#include <QHash>
#include <QList>
#include <optional>

class UserDefaults;

/// The list and the user defaults must outlive it.
class EntriesByKeys
{
public:
    EntriesByKeys(const QList<LaunchEntry> &entries, const UserDefaults &defaults);

    /// The enabled entries whose stored combination is this one, in the order of the list.
    QList<LaunchEntry> enabledEntries(const KeyboardShortcuts::Shortcut &shortcut);

private:
    bool isCurrent() const;
    void rebuild();

    const QList<LaunchEntry> &m_entries;
    const UserDefaults &m_defaults;
    QHash<KeyboardShortcuts::Shortcut, QList<LaunchEntry>> m_enabled;
    /// What it was made of: the list, whose memory this shares until the list changes, and
    /// the revision of the user defaults.
    QList<LaunchEntry> m_indexed;
    std::optional<quint64> m_revision;
};
