// The keyboard shortcuts in one desktop's settings, read and kept up to date without waiting.
#pragma once

#include "platform/linux/keys/Accelerator.h"

#include <QList>
#include <QObject>
#include <optional>

/// Main thread only. May be made before there is a QApplication.
class DesktopKeys : public QObject
{
    Q_OBJECT

public:
    using Accelerators = QList<Accelerator>;

    /// Begins to read and to follow the settings, and returns at once. To be called once.
    virtual void start() = 0;

    /// Reads again what may have changed unheard. Only once started.
    virtual void refresh() { }

    /// The shortcuts that are switched on, as last heard; nothing while the settings have not
    /// answered, and after they have gone or failed.
    const std::optional<Accelerators> &accelerators() const { return m_accelerators; }

Q_SIGNALS:
    /// The accelerators have changed.
    void changed();

protected:
    void setAccelerators(std::optional<Accelerators> accelerators);

private:
    std::optional<Accelerators> m_accelerators;
};
