// The keyboard shortcuts of the desktops that keep them in GSettings.
#pragma once

#include "platform/linux/desktopkeys/DesktopKeys.h"

#include <QList>
#include <QString>
#include <stop_token>
#include <thread>

/// Where the desktops of a family keep their shortcuts. What is not installed has none.
struct GSettingsFamily {
    struct Keys {
        const char *schema;
        /// All keys of the schema if it is null.
        const char *key = nullptr;
    };
    QList<Keys> keys;

    /// The user's own shortcuts have the key "binding" of this schema, at a path for each.
    const char *customSchema;
    /// The key of that schema that holds what the shortcut runs.
    const char *customCommand;
    /// The path, with %1 for what the list holds or, without a list, for a number from 0 on.
    QString customPath;
    /// The one of the keys that lists the user's own shortcuts; null if there is no list.
    const char *customList = nullptr;

    static const GSettingsFamily gnome;
    static const GSettingsFamily cinnamon;
    static const GSettingsFamily mate;
};

/// GSettings waits for whatever it needs, so a thread does all of this. The thread ends with the
/// object, which waits for it.
class GSettingsKeys : public DesktopKeys
{
    Q_OBJECT

public:
    explicit GSettingsKeys(GSettingsFamily family);

    void start() override;

private:
    void follow(const std::stop_token &end);
    void notify(const Accelerators &accelerators);

    const GSettingsFamily m_family;
    /// Uses all of the above, and so ends first.
    std::jthread m_thread;
};
