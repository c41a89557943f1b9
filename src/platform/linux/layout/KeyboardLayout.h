// The keyboard layout of the session, kept up to date.
#pragma once

#include "platform/linux/layout/LayoutKeys.h"

#include <QObject>

/// Main thread only.
class KeyboardLayout : public QObject
{
    Q_OBJECT

public:
    /// Starts to follow the layout. To be called once.
    virtual void start() = 0;

    /// Has no keys as long as the layout is unknown.
    const LayoutKeys &keys() const { return m_keys; }

Q_SIGNALS:
    /// Emitted when the keys have changed.
    void changed();

protected:
    void setKeys(const LayoutKeys &keys)
    {
        if (keys == m_keys)
            return;
        m_keys = keys;
        Q_EMIT changed();
    }

private:
    LayoutKeys m_keys;
};
