#include "platform/linux/activation/ServerTime.h"

#include "platform/linux/x11/X11Connection.h"

std::optional<quint32> currentServerTime()
{
    const X11Connection x11;
    if (!x11.isOpen())
        return std::nullopt;
    const auto window = xcb_generate_id(x11.get());
    const uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(x11.get(), XCB_COPY_FROM_PARENT, window, x11.root(), -1, -1, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK,
                      &events);
    // The server reports the time with every property change, even if nothing is appended.
    xcb_change_property(x11.get(), XCB_PROP_MODE_APPEND, window, XCB_ATOM_WM_NAME, XCB_ATOM_STRING,
                        8, 0, nullptr);
    xcb_flush(x11.get());
    while (const auto event = owned(xcb_wait_for_event(x11.get()))) {
        if ((event->response_type & ~0x80) == XCB_PROPERTY_NOTIFY)
            return reinterpret_cast<const xcb_property_notify_event_t *>(event.get())->time;
    }
    return std::nullopt;
}
