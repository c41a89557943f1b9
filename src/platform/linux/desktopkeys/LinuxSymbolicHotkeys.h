// The keys that the current desktop and other programs use.
#pragma once

#include "platform/SymbolicHotkeys.h"
#include "platform/linux/desktopkeys/DesktopKeys.h"
#include "platform/linux/hotkeys/TakenKeys.h"
#include "platform/linux/layout/KeyboardLayout.h"

#include <QTimer>
#include <memory>

/// Asks, watches and stores nothing before the first query.
class LinuxSymbolicHotkeys : public SymbolicHotkeys
{
    Q_OBJECT

public:
    /// The desktop keys are null if the desktop is unknown, the taken keys if nobody knows them.
    /// The layout and the taken keys must outlive it.
    LinuxSymbolicHotkeys(std::unique_ptr<DesktopKeys> desktopKeys, const KeyboardLayout &layout,
                         TakenKeys *takenKeys);

    std::optional<QList<SymbolicHotkey>> copySymbolicHotkeys() override;
    bool keepsSuperKey() override;
    bool isHeldElsewhere(quint32 keyCode, quint32 modifiers) override;

    /// To be called when the user may have changed settings without a signal.
    void refresh();

private:
    void resolve();

    std::unique_ptr<DesktopKeys> m_desktopKeys;
    const KeyboardLayout &m_layout;
    TakenKeys *m_takenKeys;
    QTimer m_settling;
    bool m_isStarted = false;
    std::optional<QList<SymbolicHotkey>> m_hotkeys;
    bool m_keepsSuperKey = false;
};
