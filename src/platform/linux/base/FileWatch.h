// Tells of changes of files that other programs write.
#pragma once

#include <QFileSystemWatcher>
#include <QObject>
#include <QStringList>
#include <QTimer>

class FileWatch : public QObject
{
    Q_OBJECT

public:
    /// Needs a QApplication. Of the files, only the first one may appear later.
    explicit FileWatch(const QStringList &paths);

Q_SIGNALS:
    /// Emitted once for changes that follow each other closely.
    void changed();

private:
    void renew();

    const QStringList m_paths;
    QFileSystemWatcher m_watcher;
    QTimer m_settling;
};
