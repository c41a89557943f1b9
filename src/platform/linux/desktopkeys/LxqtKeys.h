// The keyboard shortcuts of LXQt, from the file in which its service stores them.
#pragma once

#include "platform/linux/desktopkeys/DesktopKeys.h"

#include <QFileSystemWatcher>
#include <QTimer>
#include <optional>

/// Reads the user's file or, if there is none, the first of the system's files.
class LxqtKeys : public DesktopKeys
{
    Q_OBJECT

public:
    LxqtKeys();
    void start() override;

private:
    void read();

    /// Can be constructed only when there is a QApplication.
    std::optional<QFileSystemWatcher> m_watcher;
    QTimer m_pause;
};
