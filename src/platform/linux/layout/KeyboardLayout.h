// The keyboard layout of the session, kept up to date.
#pragma once

#include "platform/linux/layout/KeyLabels.h"
#include "platform/linux/layout/LayoutKeys.h"
#include "platform/linux/layout/Xkbcommon.h"

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

    /// The labels of a US keyboard as long as the layout is unknown.
    const KeyLabels &labels() const { return m_labels; }

Q_SIGNALS:
    /// Emitted when the keys have changed.
    void changed();

    /// Emitted when a label has changed.
    void labelsChanged();

protected:
    /// Reads the layout with this index, which is in use, and frees the key map.
    void setLayout(XkbKeymap keymap, quint32 layout);

    void setKeys(const LayoutKeys &keys);
    void setLabels(const KeyLabels &labels);

private:
    LayoutKeys m_keys;
    KeyLabels m_labels;
};
