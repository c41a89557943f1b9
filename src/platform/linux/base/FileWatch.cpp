#include "platform/linux/base/FileWatch.h"

#include <QFileInfo>
#include <chrono>

using namespace std::chrono_literals;

namespace
{
/// The path itself if it exists, else its nearest existing parent folder.
QString watchable(QString path)
{
    while (!QFileInfo::exists(path))
        path = QFileInfo(path).path();
    return path;
}
} // namespace

FileWatch::FileWatch(const QStringList &paths)
    : m_paths(paths)
{
    const auto settle = qOverload<>(&QTimer::start);
    connect(&m_watcher, &QFileSystemWatcher::fileChanged, &m_settling, settle);
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, &m_settling, settle);
    // Watchers report one change of a file several times.
    m_settling.setInterval(50ms);
    m_settling.setSingleShot(true);
    connect(&m_settling, &QTimer::timeout, this, [this] {
        renew();
        Q_EMIT changed();
    });
    renew();
}

/// Renews all watches, because a file of the same name may have been replaced.
void FileWatch::renew()
{
    if (const QStringList watched = m_watcher.files() + m_watcher.directories(); !watched.isEmpty())
        m_watcher.removePaths(watched);
    m_watcher.addPath(watchable(m_paths.first()));
    for (const QString &path : m_paths.sliced(1)) {
        if (QFileInfo::exists(path))
            m_watcher.addPath(path);
    }
}
