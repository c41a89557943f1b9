// Tells of changes of files that other programs write.
#pragma once

#include <QFileSystemWatcher>
#include <QObject>
#include <QStringList>
#include <QTimer>
#include <chrono>

/// The user's configuration file with that path, which may be missing, and the system's, in order
/// of precedence.
QStringList configFiles(const QString &path);

class FileWatch : public QObject
{
    Q_OBJECT

public:
    /// Needs a QApplication. The files may appear later. Changes that follow each other within the
    /// pause count as one.
    explicit FileWatch(const QStringList &paths,
                       std::chrono::milliseconds pause = std::chrono::milliseconds(50));

Q_SIGNALS:
    /// Emitted after the pause.
    void changed();

private:
    void renew();
    void awaitFiles();

    const QStringList m_paths;
    QFileSystemWatcher m_watcher;
    QTimer m_pause;
};
