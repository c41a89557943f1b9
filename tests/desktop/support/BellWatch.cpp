#include "support/BellWatch.h"

#include <QTest>
#include <cstdlib>

#define explicit explicit_
#include <xcb/xkb.h>
#undef explicit

BellWatch::BellWatch()
    : m_connection(xcb_connect(nullptr, nullptr))
{
    std::free(xcb_xkb_use_extension_reply(m_connection, xcb_xkb_use_extension(m_connection, 1, 0),
                                          nullptr));
    constexpr uint16_t bells = XCB_XKB_EVENT_TYPE_BELL_NOTIFY;
    const auto selection = xcb_xkb_select_events_checked(m_connection, XCB_XKB_ID_USE_CORE_KBD,
                                                         bells, 0, bells, 0, 0, nullptr);
    auto *const error = xcb_request_check(m_connection, selection);
    QVERIFY(!error);
}

BellWatch::~BellWatch()
{
    xcb_disconnect(m_connection);
}

int BellWatch::rings()
{
    const auto firstEvent = xcb_get_extension_data(m_connection, &xcb_xkb_id)->first_event;
    while (auto *const event = xcb_poll_for_event(m_connection)) {
        const auto *const xkbEvent = reinterpret_cast<xcb_xkb_bell_notify_event_t *>(event);
        if ((event->response_type & 0x7f) == firstEvent && xkbEvent->xkbType == XCB_XKB_BELL_NOTIFY)
            ++m_rings;
        std::free(event);
    }
    return m_rings;
}
