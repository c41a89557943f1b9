// The one owner of the user's list: loads it, keeps the hot keys in step with it, runs its entries.
#pragma once

#include "model/AppError.h"
#include "model/LaunchEntry.h"

#include <QList>
#include <QObject>
#include <QUuid>
#include <optional>

class HotkeyCenter;
struct Platform;

/// Main thread only. The platform's services and the center must outlive it.
class ShortcutStore : public QObject
{
    Q_OBJECT

public:
    /// Loads the list and registers the stored combinations of its enabled entries.
    ShortcutStore(const Platform &platform, HotkeyCenter &center);

    /// The one instance on the system's services, made on first use and never destroyed.
    static ShortcutStore &shared();

    /// In the order of the list.
    const QList<LaunchEntry> &entries() const { return m_entries; }

    /// The last error that the user should see.
    const std::optional<AppError> &error() const { return m_error; }

    /// What a key press does: runs the entry if there is one with that id and it is enabled.
    void fire(const QUuid &id);

    /// Runs the entry on a later turn of the event loop, enabled or not.
    void run(const LaunchEntry &entry);

    /// Publishes an error: a sentence, and the underlying error's own words.
    void report(const QString &message, const Error &error);

private:
    void load();
    /// The path of the entries file; makes its folder if it is not there.
    Result<QString> storageURL() const;
    Result<QList<LaunchEntry>> readEntries() const;
    void registerHandler(const LaunchEntry &entry);
    void applyEnabledState();

    const Platform &m_platform;
    HotkeyCenter &m_center;
    QList<LaunchEntry> m_entries;
    std::optional<AppError> m_error;
};
