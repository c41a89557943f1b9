// The desktop's register of StatusNotifierItems, which may come, go and be replaced at any time.
#pragma once

#include <QDBusServiceWatcher>
#include <QObject>

/// Whether items are shown to the user.
enum class NotifierHost {
    /// They are.
    present,
    /// Not yet, or no more: there is a watcher, but nobody who shows what it knows of.
    awaited,
    /// There is no watcher either.
    absent,
};

class StatusNotifierWatcher : public QObject
{
    Q_OBJECT

public:
    StatusNotifierWatcher();

    /// Makes our item known to it now, and from now on to each that comes.
    void start();

Q_SIGNALS:
    /// Comes soon after the start, unless a watcher hangs.
    void hostChanged(NotifierHost host);

private Q_SLOTS:
    void askForHost();

private:
    void registerItem();

    QDBusServiceWatcher m_owner;
};
