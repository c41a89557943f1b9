// The keys that the running desktop and, on X11, other programs use.
#pragma once

#include "platform/SymbolicHotkeys.h"
#include "platform/linux/desktopkeys/DesktopKeys.h"
#include "platform/linux/hotkeys/GrabProbe.h"
#include "platform/linux/layout/KeyboardLayout.h"

#include <QTimer>
#include <memory>

/// Nothing is asked, watched or held in memory for it before somebody first wants to know.
class LinuxSymbolicHotkeys : public SymbolicHotkeys
{
    Q_OBJECT

public:
    /// Without desktop keys the desktop is none that we know; without a grab probe it is not on
    /// X11. The probe must outlive it.
    LinuxSymbolicHotkeys(std::unique_ptr<DesktopKeys> desktopKeys,
                         std::unique_ptr<KeyboardLayout> layout, GrabProbe *grabProbe);

    std::optional<QList<SymbolicHotkey>> copySymbolicHotkeys() override;
    bool isHeldElsewhere(quint32 keyCode, quint32 modifiers) override;

    /// To be called when the user may have changed something unheard.
    void refresh();

private:
    void resolve();

    std::unique_ptr<DesktopKeys> m_desktopKeys;
    std::unique_ptr<KeyboardLayout> m_layout;
    GrabProbe *m_grabProbe;
    QTimer m_settling;
    bool m_isStarted = false;
    std::optional<QList<SymbolicHotkey>> m_hotkeys;
};
