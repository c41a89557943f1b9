#include "platform/linux/activation/ActiveWindow.h"

#include "platform/linux/x11/Atom.h"

#include <QGuiApplication>
#include <QWindow>
#include <algorithm>
#include <array>
#include <optional>

namespace
{
/// Qt's connection; null if the program does not run on X11.
xcb_connection_t *qtConnection()
{
    const auto *const x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return x11 ? x11->connection() : nullptr;
}

xcb_window_t rootOf(xcb_connection_t *connection)
{
    return xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
}

std::optional<uint32_t> numberIn(xcb_connection_t *connection, xcb_window_t window,
                                 const QByteArray &property)
{
    const auto request = xcb_get_property(connection, false, window, atom(connection, property),
                                          XCB_ATOM_CARDINAL, 0, 1);
    const auto reply = owned(xcb_get_property_reply(connection, request, nullptr));
    if (!reply || reply->format != 32 || reply->length != 1)
        return std::nullopt;
    return *static_cast<const uint32_t *>(xcb_get_property_value(reply.get()));
}

/// Sends a message about the window to the window manager.
void send(xcb_connection_t *connection, xcb_window_t window, const QByteArray &name,
          const std::array<uint32_t, 2> &values)
{
    xcb_client_message_event_t message = {};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = atom(connection, name);
    std::ranges::copy(values, message.data.data32);
    xcb_send_event(connection, false, rootOf(connection),
                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char *>(&message));
    xcb_flush(connection);
}

/// The source indication of normal applications in EWMH messages.
constexpr uint32_t fromApplication = 1;
} // namespace

void requestActiveWindow(const QWindow &window, quint32 userTime)
{
    auto *const connection = qtConnection();
    if (!connection)
        return;
    const auto id = xcb_window_t(window.winId());
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, id,
                        atom(connection, "_NET_WM_USER_TIME"), XCB_ATOM_CARDINAL, 32, 1, &userTime);
    send(connection, id, "_NET_ACTIVE_WINDOW", {fromApplication, userTime});
}

void moveToCurrentWorkspace(const QWindow &window)
{
    auto *const connection = qtConnection();
    if (!connection)
        return;
    // The EWMH desktop number of windows on all workspaces.
    constexpr uint32_t onAll = 0xFFFFFFFF;
    const auto id = xcb_window_t(window.winId());
    const auto current = numberIn(connection, rootOf(connection), "_NET_CURRENT_DESKTOP");
    const auto own = numberIn(connection, id, "_NET_WM_DESKTOP");
    if (current && own && *own != *current && *own != onAll)
        send(connection, id, "_NET_WM_DESKTOP", {*current, fromApplication});
}
