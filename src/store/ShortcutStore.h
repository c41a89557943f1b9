// The only owner of the user's list: loads and saves it, keeps the hot keys in line with it, runs
// its entries and reports the outcomes.
#pragma once

#include "model/AppError.h"
#include "model/EntriesFile.h"
#include "model/LaunchEntry.h"
#include "words/DesignWording.h"

#include <QHash>
#include <QList>
#include <QObject>
#include <QStringList>
#include <QTimer>
#include <QUuid>
#include <chrono>
#include <optional>
#include <utility>

class HotkeyCenter;
class UserDefaults;
struct ExportItem;
struct Platform;

/// Main thread only. The platform's services and the center must outlive the store and the runs
/// that it starts.
class ShortcutStore : public QObject
{
    Q_OBJECT

public:
    /// Loads the list and registers the stored combinations of its enabled entries. A change can be
    /// undone for undoTime.
    ShortcutStore(const Platform &platform, HotkeyCenter &center,
                  std::chrono::milliseconds undoTime = std::chrono::seconds(30));

    /// The program's only instance. main creates it, never destroys it, and calls setShared() once
    /// the list is loaded; until then there is none.
    static ShortcutStore &shared();
    static void setShared(ShortcutStore &store) { s_shared = &store; }

    /// In list order.
    const QList<LaunchEntry> &entries() const { return m_entries; }

    /// While true, no combination is registered and fire() does nothing.
    bool paused() const { return m_paused; }
    void setPaused(bool paused);

    /// The first error that the user has not seen yet.
    std::optional<AppError> error() const;

    /// Removes an error that the user has seen; the others stay.
    void clearError(const AppError &seen);

    /// Replaces the entry that has the same id, or appends the entry.
    void upsert(const LaunchEntry &entry);

    /// Removes all entries with the entry's id and, once the list is saved, the stored combination.
    void deleteEntry(const LaunchEntry &entry);

    /// Does nothing if no entry has this id.
    void setEnabled(bool isEnabled, const QUuid &id);

    bool contains(const QUuid &id) const;

    /// Runs the entry on a later turn of the event loop, even if it is disabled or the store is
    /// paused, and reports the outcome by sound and notification.
    void run(const LaunchEntry &entry);

    /// Handles a key press: runs the entry with this id if it exists and is enabled and the store
    /// is not paused.
    void fire(const QUuid &id);

    /// Queues an error behind those that the user has not seen yet: a sentence, and the message of
    /// the underlying error. It replaces a queued error with the same sentence.
    void report(const QString &message, const Error &error);

    /// Removes the stored combination of every entry; the entries stay.
    void resetAllShortcuts();

    /// The last change of the list or of its combinations, if it can be undone.
    struct Undoable {
        /// The deleted entry; nothing if all combinations were removed.
        std::optional<LaunchEntry> deleted;
        bool operator==(const Undoable &) const = default;
    };

    /// What undo() would undo: a deletion or a reset, until the next change or for a limited time.
    std::optional<Undoable> undoable() const;

    /// Brings back the entries and combinations, exactly as they were; does nothing if nothing can
    /// be undone.
    void undo();

    /// The list with its key combinations, in the file format that importData() reads.
    QByteArray exportData() const;

    /// Appends the entries of an exported file as new ones and returns their number. An invalid
    /// file adds nothing.
    Result<qsizetype> importData(const QByteArray &data);

    /// Why the combination that is stored under the name may not work, as sentences for the user:
    /// first that the system uses it, then each enabled entry with the same keys in list order,
    /// except the excluded entry. Uses the system's last known answers; observers are notified when
    /// these change.
    QStringList warnings(const KeyboardShortcuts::Name &name,
                         const std::optional<QUuid> &excluding = std::nullopt) const;

    /// Whether a shortcut of the desktop has the keys that are stored under the name, so that its
    /// settings can free them.
    bool areDesktopKeys(const KeyboardShortcuts::Name &name) const;

    /// Says which keys the desktop uses in place of those stored under the name; empty as a rule.
    QString otherKeys(const KeyboardShortcuts::Name &name) const;

    /// Whether this session offers a way to register keys, as far as is known.
    bool canRegisterKeys() const;

    /// The entry's stored combination, or "No keys".
    QString shortcutText(const LaunchEntry &entry) const;

    /// The combination as the user chose to read it.
    QString keyText(const KeyboardShortcuts::Shortcut &shortcut) const;

    /// The combination that is stored under the name, in words for screen readers; empty if
    /// keyText() is in words already.
    QString spokenKeys(const KeyboardShortcuts::Name &name) const;

    /// Has the texts of keys that the user chose: the system's, or those of the design.
    const Wording &keyWording() const;

    /// The combination that is stored under the name.
    std::optional<KeyboardShortcuts::Shortcut>
    getShortcut(const KeyboardShortcuts::Name &name) const;

    /// Stores the combination, or removes it, and updates the registered hot key. Does not notify
    /// observers.
    void setShortcut(const std::optional<KeyboardShortcuts::Shortcut> &shortcut,
                     const KeyboardShortcuts::Name &name);

    /// Call this when stored combinations have changed, since observers show them too.
    void announceChange();

    /// Whether the user wants a notification of every successful run; true by default.
    static bool showRunNotification(const UserDefaults &defaults);

    /// Whether the user wants open applications to be brought to the front; true by default.
    static bool bringToFront(const UserDefaults &defaults);

    /// Whether the user wants to read key combinations with the signs of a Mac's keys; false by
    /// default.
    static bool showMacKeySigns(const UserDefaults &defaults);

Q_SIGNALS:
    /// Emitted before entries, paused or error change, and also when only values that views derive
    /// from them have changed. Read the values later, not in the slot.
    void willChange();

private:
    using EntriesByKeys = QHash<KeyboardShortcuts::Shortcut, QList<LaunchEntry>>;

    /// What a change that can be undone has removed.
    struct Former {
        Undoable change;
        QList<LaunchEntry> entries;
        /// The stored values by user-defaults key, also those that cannot be read.
        QList<std::pair<QString, QByteArray>> combinations;
    };

    const EntriesByKeys &enabledByKeys() const;
    void add(const ExportItem &item);
    void registerHandler(const LaunchEntry &entry);
    void prepareRun(const LaunchEntry &entry);
    void queueRun(const LaunchEntry &entry);
    void applyEnabledState();
    void storeShortcut(const std::optional<KeyboardShortcuts::Shortcut> &shortcut,
                       const KeyboardShortcuts::Name &name);
    void remember(const Undoable &change);
    void forgetFormer();
    /// Returns whether the list has been written to disk.
    bool save();

    static inline ShortcutStore *s_shared = nullptr;

    const Platform &m_platform;
    HotkeyCenter &m_center;
    EntriesFile m_file;
    QList<LaunchEntry> m_entries;
    /// The enabled entries by combination, in list order; built on demand.
    mutable std::optional<EntriesByKeys> m_enabledByKeys;
    bool m_paused;
    std::optional<Former> m_former;
    /// Runs while something can be undone.
    QTimer m_undoTime{this};
    QList<AppError> m_errors;
    DesignWording m_designWording;
};
