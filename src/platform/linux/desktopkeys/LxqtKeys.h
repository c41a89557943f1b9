// The keyboard shortcuts of LXQt, from the file in which its service keeps them.
#pragma once

#include "platform/linux/desktopkeys/DesktopKeys.h"

#include <QFileSystemWatcher>
#include <QTimer>
#include <optional>

/// The user's file, or while there is none the first of the system's.
class LxqtKeys : public DesktopKeys
{
    Q_OBJECT

public:
    LxqtKeys();
    void start() override;

private:
    void read();

    /// Can be made only when there is a QApplication.
    std::optional<QFileSystemWatcher> m_watcher;
    QTimer m_pause;
};
