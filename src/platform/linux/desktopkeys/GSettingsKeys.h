// The keyboard shortcuts of desktops that store them in GSettings.
#pragma once

#include "platform/linux/desktopkeys/DesktopKeys.h"

#include <QList>
#include <QString>
#include <stop_token>
#include <thread>

/// Names the settings in which a family of desktops stores its shortcuts. Schemas that are not
/// installed are skipped.
struct GSettingsFamily {
    struct Keys {
        const char *schema;
        /// Null means all keys of the schema.
        const char *key = nullptr;
    };
    QList<Keys> keys;

    /// The schema of the user's own shortcuts. Each has its own path, with its accelerator under
    /// the key "binding" and its name under "name".
    const char *customSchema;
    /// The key in customSchema that holds the command of the shortcut.
    const char *customCommand;
    /// The path of a custom shortcut; %1 stands for its entry in the list or, without a list, for a
    /// number counted from 0.
    QString customPath;
    /// The key that lists the user's own shortcuts; null if there is no list.
    const char *customList = nullptr;
    /// Whether the window manager grabs a Super key that is a shortcut by itself, and keeps what
    /// follows that key.
    bool hasOverlayKey = false;
    /// The folder, below that for configuration, with a JSON file for each applet that has a menu
    /// with an overlay key; empty if there is none.
    QString menuSettings = {};

    static const GSettingsFamily gnome;
    static const GSettingsFamily cinnamon;
    static const GSettingsFamily mate;
};

/// GSettings blocks, so a thread does all the work. The destructor ends the thread and waits for
/// it.
class GSettingsKeys : public DesktopKeys
{
    Q_OBJECT

public:
    explicit GSettingsKeys(GSettingsFamily family);

    void start() override;
    bool keepsSuperKey() const override;

private:
    void follow(const std::stop_token &end);

    const GSettingsFamily m_family;
    /// Uses all members above, and so is destroyed first.
    std::jthread m_thread;
};
