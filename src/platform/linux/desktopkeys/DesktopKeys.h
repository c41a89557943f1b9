// The keyboard shortcuts in one desktop's settings, read and kept up to date without blocking.
#pragma once

#include "platform/linux/base/ApplicationId.h"
#include "platform/linux/keys/Accelerator.h"

#include <QList>
#include <QObject>
#include <QString>
#include <optional>
#include <utility>

/// One of the desktop's own shortcuts.
struct DesktopKey {
    Accelerator accelerator;
    /// What the desktop calls the action, from actionName().
    std::optional<QString> action = {};

    bool operator==(const DesktopKey &) const = default;
};

/// Main thread only. May be constructed before there is a QApplication.
class DesktopKeys : public QObject
{
    Q_OBJECT

public:
    /// Starts to read and follow the settings, and returns at once. To be called once.
    virtual void start() = 0;

    /// Rereads what may have changed without a signal. Call only after start().
    virtual void refresh() { }

    /// Whether the desktop's window manager keeps combinations whose only modifier is Super,
    /// because that key alone opens something.
    virtual bool keepsSuperKey() const { return false; }

    /// The enabled shortcuts, as last read; nothing until the settings have answered, and after
    /// they have gone or failed.
    const std::optional<QList<DesktopKey>> &keys() const { return m_keys; }

Q_SIGNALS:
    /// Emitted when the keys have changed.
    void changed();

protected:
    void setKeys(std::optional<QList<DesktopKey>> keys)
    {
        if (keys == m_keys)
            return;
        m_keys = std::move(keys);
        Q_EMIT changed();
    }

private:
    std::optional<QList<DesktopKey>> m_keys;
};

/// Whether the command of a shortcut calls the program. Such keys already work for an entry, so
/// they need no warning.
inline bool callsUs(const QString &command)
{
    return command.contains(applicationId);
}
