#include "platform/linux/x11/X11Connection.h"

#include "platform/linux/x11/Xkb.h"

#include <xcb/xinput.h>

namespace
{
bool has(xcb_connection_t *connection, xcb_extension_t &extension)
{
    const auto *const data = xcb_get_extension_data(connection, &extension);
    return data && data->present;
}
} // namespace

X11Connection::X11Connection()
{
    int screenNumber = 0;
    m_connection = xcb_connect(nullptr, &screenNumber);
    if (!isOpen())
        return;
    auto screen = xcb_setup_roots_iterator(xcb_get_setup(m_connection));
    while (screenNumber-- > 0)
        xcb_screen_next(&screen);
    m_root = screen.data->root;
    // Query both extensions in one round trip.
    xcb_prefetch_extension_data(m_connection, &xcb_xkb_id);
    xcb_prefetch_extension_data(m_connection, &xcb_input_id);
}

bool X11Connection::hasXkb() const
{
    return has(m_connection, xcb_xkb_id);
}

bool X11Connection::hasXInput() const
{
    return has(m_connection, xcb_input_id);
}

X11Connection::~X11Connection()
{
    xcb_disconnect(m_connection);
}
