// The keyboard shortcuts in one desktop's settings, read and kept up to date without blocking.
#pragma once

#include "platform/linux/base/ApplicationId.h"
#include "platform/linux/keys/Accelerator.h"

#include <QList>
#include <QObject>
#include <optional>
#include <utility>

/// Main thread only. May be constructed before there is a QApplication.
class DesktopKeys : public QObject
{
    Q_OBJECT

public:
    using Accelerators = QList<Accelerator>;

    /// Starts to read and follow the settings, and returns at once. To be called once.
    virtual void start() = 0;

    /// Rereads what may have changed without a signal. Call only after start().
    virtual void refresh() { }

    /// The enabled shortcuts, as last read; nothing until the settings have answered, and after
    /// they have gone or failed.
    const std::optional<Accelerators> &accelerators() const { return m_accelerators; }

Q_SIGNALS:
    /// Emitted when the accelerators have changed.
    void changed();

protected:
    void setAccelerators(std::optional<Accelerators> accelerators)
    {
        if (accelerators == m_accelerators)
            return;
        m_accelerators = std::move(accelerators);
        Q_EMIT changed();
    }

private:
    std::optional<Accelerators> m_accelerators;
};

/// Whether the command of a shortcut calls the program. Such keys already work for an entry, so
/// they need no warning.
inline bool callsUs(const QString &command)
{
    return command.contains(applicationId);
}
