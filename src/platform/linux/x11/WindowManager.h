// Requests to the X11 window manager.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <xcb/xcb.h>

/// Sends a message about the window. Does not wait.
inline void sendToWindowManager(xcb_connection_t *connection, xcb_window_t root,
                                xcb_window_t window, xcb_atom_t type,
                                const std::array<uint32_t, 2> &values)
{
    xcb_client_message_event_t message = {};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = type;
    std::ranges::copy(values, message.data.data32);
    xcb_send_event(connection, false, root,
                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char *>(&message));
    xcb_flush(connection);
}
