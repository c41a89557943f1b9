// The keyboard layout of the session, kept up to date.
#pragma once

#include "platform/linux/layout/KeyLabels.h"
#include "platform/linux/layout/KeyRepeat.h"
#include "platform/linux/layout/KeySymbols.h"
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

    /// On Wayland only. Has no keys as long as the layout is unknown.
    const KeySymbols &symbols() const { return m_symbols; }

    /// The usual one as long as it is unknown.
    const KeyRepeat &keyRepeat() const { return m_keyRepeat; }

Q_SIGNALS:
    /// Emitted when the keys have changed.
    void changed();

    /// Emitted when a label has changed.
    void labelsChanged();

    /// Emitted when what a key gives has changed.
    void symbolsChanged();

protected:
    enum class WithSymbols { no, yes };

    /// Reads the layout with this index, which is in use, and frees the key map.
    void setLayout(XkbKeymap keymap, quint32 layout, WithSymbols withSymbols = WithSymbols::no);

    void setKeys(const LayoutKeys &keys);
    void setLabels(const KeyLabels &labels);
    void setSymbols(const KeySymbols &symbols);
    void setKeyRepeat(const KeyRepeat &keyRepeat) { m_keyRepeat = keyRepeat; }

private:
    LayoutKeys m_keys;
    KeyLabels m_labels;
    KeySymbols m_symbols;
    KeyRepeat m_keyRepeat;
};
