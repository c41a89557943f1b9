// Counts what a connection asks of the X server.
#pragma once

#include <xcb/xcb.h>

class RequestCounter
{
public:
    explicit RequestCounter(xcb_connection_t *connection)
        : m_connection(connection)
    {
    }

    /// The number of the next request, less one for each time that this was asked.
    unsigned int soFar()
    {
        const auto cookie = xcb_get_input_focus(m_connection);
        xcb_discard_reply(m_connection, cookie.sequence);
        return cookie.sequence - ++m_asked;
    }

private:
    xcb_connection_t *m_connection;
    unsigned int m_asked = 0;
};
