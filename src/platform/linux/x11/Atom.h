// X11 atoms.
#pragma once

#include "platform/linux/x11/X11Connection.h"

#include <QByteArray>

/// Waits for the server's answer; XCB_ATOM_NONE if the connection is lost.
inline xcb_atom_t atom(xcb_connection_t *connection, const QByteArray &name)
{
    const auto request =
        xcb_intern_atom(connection, false, uint16_t(name.size()), name.constData());
    const auto reply = owned(xcb_intern_atom_reply(connection, request, nullptr));
    return reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
}
