// The presses of keys, for whoever has to hear of them before any window does.
#pragma once

#include "platform/EventFlag.h"
#include "platform/Registration.h"

#include <functional>
#include <optional>

class QWidget;

struct KeyEvent {
    /// The virtual key code.
    quint16 keyCode;
    /// An OR of EventFlag bits, perhaps with others.
    quint32 modifierFlags;

    bool operator==(const KeyEvent &) const = default;
};

class EventMonitor
{
public:
    virtual ~EventMonitor() = default;

    /// Until the returned value ends, and while the window that the widget is in is active, every
    /// press of a key goes to the handler and to nobody else: not to the program's windows and
    /// their input methods, not to the desktop and other programs, and not to the hot keys.
    /// Modifier keys by themselves, repeats of held keys and keys that have no virtual key code go
    /// to nobody. The handler may end the value. Nothing if the system declines.
    virtual std::optional<Registration>
    addLocalMonitorForEvents(QWidget &widget, std::function<void(const KeyEvent &)> handler) = 0;
};
