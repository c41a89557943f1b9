// The one owner of the user's list: loads and saves it, keeps the hot keys in step with it, runs
// its entries and tells how that ended.
#pragma once

#include "model/AppError.h"
#include "model/EntriesFile.h"
#include "model/LaunchEntry.h"

#include <QHash>
#include <QList>
#include <QObject>
#include <QStringList>
#include <QUuid>
#include <optional>

class HotkeyCenter;
class UserDefaults;
struct ExportItem;
struct Platform;

/// Main thread only. The platform's services and the center must outlive it and its runs.
class ShortcutStore : public QObject
{
    Q_OBJECT

public:
    /// Loads the list and registers the stored combinations of its enabled entries.
    ShortcutStore(const Platform &platform, HotkeyCenter &center);

    /// The program's one instance, which main makes and never destroys. There is none before main
    /// has named it, which it does once the store has loaded the list.
    static ShortcutStore &shared();
    static void setShared(ShortcutStore &store) { s_shared = &store; }

    /// In the order of the list.
    const QList<LaunchEntry> &entries() const { return m_entries; }

    /// While true, no combination is registered and fire() does nothing.
    bool paused() const { return m_paused; }
    void setPaused(bool paused);

    /// The first of the errors that the user has not seen yet.
    std::optional<AppError> error() const;

    /// The user has seen that error; the others stay.
    void clearError(const AppError &seen);

    /// Replaces the entry that has the same id, or adds the entry at the end.
    void upsert(const LaunchEntry &entry);

    /// Removes the entries with the entry's id, and once the list is saved the stored combination.
    void deleteEntry(const LaunchEntry &entry);

    /// Nothing happens if no entry has that id.
    void setEnabled(bool isEnabled, const QUuid &id);

    bool contains(const QUuid &id) const;

    /// Runs the entry on a later turn of the event loop, paused, enabled or not, and reports the
    /// outcome by sound and notification.
    void run(const LaunchEntry &entry);

    /// What a key press does: runs the entry if there is one with that id, it is enabled and the
    /// store is not paused.
    void fire(const QUuid &id);

    /// Publishes an error behind those that the user has not seen yet: a sentence, and the
    /// underlying error's own words. It replaces one with the same sentence.
    void report(const QString &message, const Error &error);

    /// Removes the stored combination of every entry; the entries stay.
    void resetAllShortcuts();

    /// The list with its combinations, as the bytes of a file that importData() understands.
    QByteArray exportData() const;

    /// Adds the entries of such a file at the end, as new ones; how many these were. Of a file that
    /// is not valid nothing is added.
    Result<qsizetype> importData(const QByteArray &data);

    /// Why the combination that is stored under the name may not work, as sentences for the user:
    /// first that the system uses it, then each enabled entry with the same keys but the excluded
    /// one, in the order of the list. Of the system as last heard; observers hear when it has other
    /// answers.
    QStringList warnings(const KeyboardShortcuts::Name &name,
                         const std::optional<QUuid> &excluding = std::nullopt) const;

    /// The entry's stored combination, or "No keys".
    QString shortcutText(const LaunchEntry &entry) const;

    /// The combination that is stored under the name.
    std::optional<KeyboardShortcuts::Shortcut>
    getShortcut(const KeyboardShortcuts::Name &name) const;

    /// Stores a combination, or removes it, and makes that live. Announces nothing.
    void setShortcut(const std::optional<KeyboardShortcuts::Shortcut> &shortcut,
                     const KeyboardShortcuts::Name &name);

    /// To be called when the stored combinations have changed, which observers show too.
    void announceChange();

    /// Whether the user wants a notification of every successful run; by default, yes.
    static bool showRunNotification(const UserDefaults &defaults);

Q_SIGNALS:
    /// Comes before one of entries, paused and error changes, and also when only what views
    /// derive from them has changed. So read them later, not in the slot.
    void willChange();

private:
    using EntriesByKeys = QHash<KeyboardShortcuts::Shortcut, QList<LaunchEntry>>;

    const EntriesByKeys &enabledByKeys() const;
    void add(const ExportItem &item);
    void registerHandler(const LaunchEntry &entry);
    void applyEnabledState();
    /// Whether the list is on disk now.
    bool save();

    static inline ShortcutStore *s_shared = nullptr;

    const Platform &m_platform;
    HotkeyCenter &m_center;
    EntriesFile m_file;
    QList<LaunchEntry> m_entries;
    /// The enabled entries with each combination, in the order of the list; made when it is needed.
    mutable std::optional<EntriesByKeys> m_enabledByKeys;
    bool m_paused;
    QList<AppError> m_errors;
};
