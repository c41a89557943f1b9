#include "support/Mouse.h"

#include <cstdlib>
#include <xcb/xtest.h>

Mouse::Mouse()
    : m_connection(xcb_connect(nullptr, nullptr))
    , m_root(xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data->root)
{
}

Mouse::~Mouse()
{
    // The server drops the last requests of a client that leaves with events unread.
    std::free(xcb_get_input_focus_reply(m_connection, xcb_get_input_focus(m_connection), nullptr));
    xcb_disconnect(m_connection);
}

void Mouse::moveTo(const QPoint &place)
{
    fake(XCB_MOTION_NOTIFY, 0, place);
}

void Mouse::click(const QPoint &place, Qt::MouseButton button)
{
    const quint8 number = button == Qt::RightButton ? XCB_BUTTON_INDEX_3 : XCB_BUTTON_INDEX_1;
    moveTo(place);
    fake(XCB_BUTTON_PRESS, number);
    fake(XCB_BUTTON_RELEASE, number);
}

void Mouse::drag(const QPoint &from, const QPoint &to)
{
    moveTo(from);
    press();
    moveTo(to);
    release();
}

void Mouse::press()
{
    fake(XCB_BUTTON_PRESS, XCB_BUTTON_INDEX_1);
}

void Mouse::release()
{
    fake(XCB_BUTTON_RELEASE, XCB_BUTTON_INDEX_1);
}

void Mouse::fake(quint8 eventType, quint8 detail, const QPoint &place)
{
    xcb_test_fake_input(m_connection, eventType, detail, XCB_CURRENT_TIME, m_root,
                        qint16(place.x()), qint16(place.y()), 0);
    xcb_flush(m_connection);
}
