#include "platform/linux/base/FileWatch.h"

#include <QFileInfo>
#include <QStandardPaths>

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

QStringList configFiles(const QString &path)
{
    constexpr auto location = QStandardPaths::GenericConfigLocation;
    QStringList files = QStandardPaths::locateAll(location, path);
    const QString own = QStandardPaths::writableLocation(location) + u'/' + path;
    if (!files.contains(own))
        files.prepend(own);
    return files;
}

FileWatch::FileWatch(const QStringList &paths, std::chrono::milliseconds pause)
    : m_paths(paths)
{
    connect(&m_watcher, &QFileSystemWatcher::fileChanged, &m_pause, qOverload<>(&QTimer::start));
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, &FileWatch::awaitFiles);
    // Watchers report one change of a file several times.
    m_pause.setInterval(pause);
    m_pause.setSingleShot(true);
    connect(&m_pause, &QTimer::timeout, this, [this] {
        renew();
        Q_EMIT changed();
    });
    renew();
}

/// Renews all watches, because a file of the same name may have been replaced.
void FileWatch::renew()
{
    const QStringList watched = m_watcher.files() + m_watcher.directories();
    if (!watched.isEmpty())
        m_watcher.removePaths(watched);
    for (const QString &path : m_paths)
        m_watcher.addPath(watchable(path));
}

/// The folder of a missing file may change because of other files.
void FileWatch::awaitFiles()
{
    const qsizetype found = m_watcher.files().size();
    renew();
    if (m_watcher.files().size() != found)
        m_pause.start();
}
