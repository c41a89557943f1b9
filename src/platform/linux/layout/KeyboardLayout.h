// The keyboard layout of the session, as the user changes it.
#pragma once

#include "platform/linux/layout/LayoutKeys.h"

#include <QObject>

/// Main thread only.
class KeyboardLayout : public QObject
{
    Q_OBJECT

public:
    /// Begins to follow the layout. To be called once.
    virtual void start() = 0;

    /// Without keys as long as nothing is known.
    const LayoutKeys &keys() const { return m_keys; }

Q_SIGNALS:
    /// The keys have changed.
    void changed();

protected:
    void setKeys(const LayoutKeys &keys);

private:
    LayoutKeys m_keys;
};
