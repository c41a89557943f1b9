#include "platform/linux/x11/X11Connection.h"

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

X11Connection::~X11Connection()
{
    xcb_disconnect(m_connection);
}
