#include "support/StartupMessages.h"

#include <cstdlib>

StartupMessages::StartupMessages()
    : m_connection(xcb_connect(nullptr, nullptr))
{
    const auto root = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data->root;
    const uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
    const auto request =
        xcb_change_window_attributes_checked(m_connection, root, XCB_CW_EVENT_MASK, &mask);
    std::free(xcb_request_check(m_connection, request));
}

StartupMessages::~StartupMessages()
{
    xcb_disconnect(m_connection);
}

QList<QByteArray> StartupMessages::soFar()
{
    while (auto *const event = xcb_poll_for_event(m_connection)) {
        if ((event->response_type & 0x7f) == XCB_CLIENT_MESSAGE) {
            const auto &data = reinterpret_cast<xcb_client_message_event_t *>(event)->data;
            m_bytes.append(reinterpret_cast<const char *>(data.data8), sizeof data.data8);
        }
        std::free(event);
    }
    // Each ends with a zero byte, and fills up its last piece with more of them.
    QList<QByteArray> messages = m_bytes.split('\0');
    messages.removeLast();
    messages.removeAll(QByteArray());
    return messages;
}
