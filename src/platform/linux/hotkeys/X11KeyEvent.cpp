#include "platform/linux/hotkeys/X11KeyEvent.h"

#include <xcb/xinput.h>

namespace
{
template <typename Event>
const Event &as(const xcb_generic_event_t &event)
{
    return reinterpret_cast<const Event &>(event);
}

/// Presses and releases have the same structure, in the core protocol and in XInput 2.
X11KeyEvent coreEvent(const xcb_key_press_event_t &event, std::optional<KeyDown> down)
{
    return {.key = XKeycode(event.detail), .state = event.state, .time = event.time, .down = down};
}

X11KeyEvent xInputEvent(const xcb_input_key_press_event_t &event, std::optional<KeyDown> down)
{
    return {.key = XKeycode(event.detail),
            .state = quint16(event.mods.effective),
            .time = event.time,
            .down = down,
            .keyboard = event.deviceid};
}

std::optional<X11KeyEvent> readXInput(const xcb_input_key_press_event_t &event)
{
    switch (event.event_type) {
    case XCB_INPUT_KEY_PRESS:
        return xInputEvent(event,
                           event.flags & XCB_INPUT_KEY_EVENT_FLAGS_KEY_REPEAT ? KeyDown::repeat
                                                                              : KeyDown::press);
    case XCB_INPUT_KEY_RELEASE:
        return xInputEvent(event, std::nullopt);
    default:
        return std::nullopt;
    }
}
} // namespace

std::optional<X11KeyEvent> X11KeyEvent::read(const xcb_generic_event_t &event)
{
    switch (event.response_type & ~0x80) {
    case XCB_KEY_PRESS:
        return coreEvent(as<xcb_key_press_event_t>(event), KeyDown::pressOrRepeat);
    case XCB_KEY_RELEASE:
        return coreEvent(as<xcb_key_press_event_t>(event), std::nullopt);
    case XCB_GE_GENERIC:
        return readXInput(as<xcb_input_key_press_event_t>(event));
    default:
        return std::nullopt;
    }
}
