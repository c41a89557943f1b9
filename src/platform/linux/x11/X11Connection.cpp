#include "platform/linux/x11/X11Connection.h"

#include "platform/linux/x11/Xkb.h"

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
}

bool X11Connection::hasXkb() const
{
    const auto *const extension = xcb_get_extension_data(m_connection, &xcb_xkb_id);
    return extension && extension->present;
}

X11Connection::~X11Connection()
{
    xcb_disconnect(m_connection);
}
