// Monitors the key presses of the program's windows, on X11 and Wayland.
#pragma once

#include "platform/EventMonitor.h"
#include "platform/linux/base/Session.h"
#include "platform/linux/recording/HeldKeyRepeatFilter.h"
#include "platform/linux/recording/ShortcutsInhibitor.h"

#include <memory>
#include <optional>

class KeyCapture;
class WaylandHotkeyService;
class X11HotkeyService;

class LinuxEventMonitor : public EventMonitor
{
public:
    /// The session's hot keys, null if there are none: those on X11 know the keyboard. They must
    /// outlive the monitor.
    LinuxEventMonitor(SessionType session, X11HotkeyService *x11Hotkeys,
                      WaylandHotkeyService *waylandHotkeys);

    std::optional<Registration>
    addLocalMonitorForEvents(QWidget &widget,
                             std::function<void(const KeyEvent &)> handler) override;

    /// Whether key presses go to a handler at the moment.
    bool isCapturing() const;

private:
    X11HotkeyService *const m_x11Hotkeys;
    WaylandHotkeyService *const m_waylandHotkeys;
    HeldKeyRepeatFilter m_repeatFilter;
    /// In Wayland sessions only.
    std::optional<ShortcutsInhibitor> m_inhibitor;
    /// The only one that can be on: the window in front records one combination at a time.
    std::weak_ptr<KeyCapture> m_latestCapture;
};
