// The program's user interface: the status bar item with its menu, and the settings window.
#pragma once

#include "platform/StatusBar.h"

#include <QObject>
#include <memory>

class QWidget;
class ShortcutStore;
struct LaunchEntry;
struct Platform;

/// Main thread only. The platform and the store must outlive it.
class AppDelegate : public QObject, private StatusItemDelegate
{
    Q_OBJECT

public:
    AppDelegate(const Platform &platform, ShortcutStore &store);
    ~AppDelegate() override;

    /// Adds the status bar item, and opens the settings window if the user has not dismissed the
    /// welcome yet. Needs a QApplication.
    void applicationDidFinishLaunching();

    /// Brings the settings window to the front. It is created on first use and then kept: closing
    /// only hides it.
    void openSettings();

private:
    StatusButton statusButton() const override;
    QList<MenuItem> menuNeedsUpdate() override;
    void statusButtonClicked() override { openSettings(); }

    MenuItem menuItem(const LaunchEntry &entry);
    void runEntry(const MenuItem &chosen);
    void queueUpdate();

    const Platform &m_platform;
    ShortcutStore &m_store;
    std::unique_ptr<QWidget> m_settingsWindow;
    std::unique_ptr<StatusItem> m_statusItem;
    bool m_isUpdateQueued = false;
};
