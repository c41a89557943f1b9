// Registers with the desktop's StatusNotifierWatcher, which may appear, disappear and be replaced
// at any time.
#pragma once

#include <QDBusServiceWatcher>
#include <QObject>

/// Whether the desktop shows items to the user.
enum class NotifierHost {
    /// A host shows the items.
    present,
    /// There is a watcher, but no host that shows its items: not yet, or no longer.
    awaited,
    /// There is no watcher.
    absent,
};

class StatusNotifierWatcher : public QObject
{
    Q_OBJECT

public:
    StatusNotifierWatcher();

    /// Registers our item with the current watcher, and from then on with each new one.
    void start();

Q_SIGNALS:
    /// Emitted soon after the start, unless the watcher hangs, and after each change.
    void hostChanged(NotifierHost host);

private Q_SLOTS:
    void askForHost();

private:
    void registerItem();

    QDBusServiceWatcher m_owner;
};
