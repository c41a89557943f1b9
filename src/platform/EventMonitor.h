// Delivers key presses to one handler before any window receives them.
#pragma once

#include "platform/EventFlag.h"
#include "platform/Registration.h"

#include <functional>
#include <optional>

class QWidget;

struct KeyEvent {
    /// The virtual key code.
    quint16 keyCode;
    /// An OR of EventFlag bits; other bits may be set too.
    quint32 modifierFlags;

    bool operator==(const KeyEvent &) const = default;
};

class EventMonitor
{
public:
    virtual ~EventMonitor() = default;

    /// While the returned value lives and the widget's window is active, every key press goes to
    /// the handler alone: not to the program's windows and their input methods, not to the desktop
    /// and other programs, and not to the hot keys. Modifier keys alone, auto-repeats and keys
    /// without a virtual key code are discarded. The handler may end the value. Returns nothing if
    /// the system declines.
    virtual std::optional<Registration>
    addLocalMonitorForEvents(QWidget &widget, std::function<void(const KeyEvent &)> handler) = 0;
};
