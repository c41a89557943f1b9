#include "platform/linux/x11/ActiveWindow.h"

#include "platform/linux/x11/Atom.h"

#include <QGuiApplication>
#include <QWindow>

void requestActiveWindow(const QWindow &window, quint32 userTime)
{
    const auto *const x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (!x11)
        return;
    auto *const connection = x11->connection();
    const auto id = xcb_window_t(window.winId());
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, id,
                        atom(connection, "_NET_WM_USER_TIME"), XCB_ATOM_CARDINAL, 32, 1, &userTime);

    constexpr uint32_t fromApplication = 1;
    xcb_client_message_event_t message = {};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = id;
    message.type = atom(connection, "_NET_ACTIVE_WINDOW");
    message.data.data32[0] = fromApplication;
    message.data.data32[1] = userTime;
    const auto root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
    xcb_send_event(connection, false, root,
                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char *>(&message));
    xcb_flush(connection);
}
