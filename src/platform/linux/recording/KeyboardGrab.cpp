#include "platform/linux/recording/KeyboardGrab.h"

#include <QGuiApplication>

KeyboardGrab::KeyboardGrab(xcb_window_t window)
    : m_connection(qGuiApp->nativeInterface<QNativeInterface::QX11Application>()->connection())
    , m_window(window)
    , m_child(xcb_generate_id(m_connection))
{
    xcb_create_window(m_connection, XCB_COPY_FROM_PARENT, m_child, window, -1, -1, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
    xcb_map_window(m_connection, m_child);
    qGuiApp->installNativeEventFilter(this);
}

KeyboardGrab::~KeyboardGrab()
{
    xcb_ungrab_keyboard(m_connection, XCB_CURRENT_TIME);
    // The child may have ended with its window.
    xcb_discard_reply(m_connection, xcb_destroy_window_checked(m_connection, m_child).sequence);
    // Flush now instead of when the event loop is idle, so that no press of a hot key is lost.
    xcb_flush(m_connection);
}

void KeyboardGrab::renew() const
{
    constexpr bool ownerGetsKeysAsUsual = false;
    const auto request =
        xcb_grab_keyboard(m_connection, ownerGetsKeysAsUsual, m_child, XCB_CURRENT_TIME,
                          XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    xcb_discard_reply(m_connection, request.sequence);
    xcb_flush(m_connection);
}

bool KeyboardGrab::nativeEventFilter(const QByteArray &, void *message, qintptr *)
{
    auto &event = *static_cast<xcb_generic_event_t *>(message);
    switch (event.response_type & ~0x80) {
    case XCB_KEY_PRESS:
    case XCB_KEY_RELEASE:
        // Qt does not know the child.
        if (auto &key = reinterpret_cast<xcb_key_press_event_t &>(event); key.event == m_child)
            key.event = m_window;
        return false;
    case XCB_FOCUS_OUT: {
        // Qt would take the window for inactive.
        const auto &focusOut = reinterpret_cast<const xcb_focus_out_event_t &>(event);
        return focusOut.event == m_window && focusOut.mode == XCB_NOTIFY_MODE_GRAB;
    }
    default:
        return false;
    }
}
