#include "support/Keyboard.h"

#include "platform/linux/x11/Atom.h"
#include "platform/linux/x11/Xkb.h"

#include <QTest>
#include <array>
#include <chrono>
#include <thread>
#include <xcb/xtest.h>

using namespace Qt::StringLiterals;

namespace
{
/// X key codes of a server that uses evdev codes.
xcb_keycode_t keyCode(int key)
{
    return xcb_keycode_t(key + 8);
}

/// What is to be pressed for the character.
QList<int> keysOf(QChar character)
{
    struct Keys {
        int first;
        QLatin1StringView plain;
        QLatin1StringView shifted;
    };
    static constexpr std::array rows{
        Keys{KEY_1, "1234567890-="_L1, "!@#$%^&*()_+"_L1},
        Keys{KEY_Q, "qwertyuiop[]"_L1, "QWERTYUIOP{}"_L1},
        Keys{KEY_A, "asdfghjkl;'`"_L1, "ASDFGHJKL:\"~"_L1},
        Keys{KEY_BACKSLASH, "\\zxcvbnm,./"_L1, "|ZXCVBNM<>?"_L1},
        Keys{KEY_SPACE, " "_L1, {}},
    };
    for (const auto &[first, plain, shifted] : rows) {
        if (const qsizetype place = plain.indexOf(character); place >= 0)
            return {first + int(place)};
        if (const qsizetype place = shifted.indexOf(character); place >= 0)
            return {KEY_LEFTSHIFT, first + int(place)};
    }
    qFatal("no key types U+%04x", character.unicode());
}

/// The X server's clock.
auto milliseconds()
{
    using namespace std::chrono;
    return floor<std::chrono::milliseconds>(steady_clock::now());
}

auto lockState(xcb_connection_t *connection)
{
    return owned(xcb_xkb_get_state_reply(
        connection, xcb_xkb_get_state(connection, XCB_XKB_ID_USE_CORE_KBD), nullptr));
}
} // namespace

Keyboard::Keyboard()
    : m_connection(xcb_connect(nullptr, nullptr))
    , m_root(xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data->root)
{
    xcb_discard_reply(
        m_connection,
        xcb_xkb_use_extension(m_connection, XCB_XKB_MAJOR_VERSION, XCB_XKB_MINOR_VERSION).sequence);
}

Keyboard::~Keyboard()
{
    releaseAll();
    // The server drops the last requests of a client that leaves with events unread.
    sync();
    xcb_disconnect(m_connection);
}

void Keyboard::fake(quint8 eventType, int key)
{
    xcb_test_fake_input(m_connection, eventType, keyCode(key), XCB_CURRENT_TIME, m_root, 0, 0, 0);
    xcb_flush(m_connection);
}

void Keyboard::down(int key)
{
    // A press in the millisecond of the key's release looks like an auto-repeat.
    if (key == m_lastReleased) {
        sync();
        for (const auto released = milliseconds(); milliseconds() == released;)
            std::this_thread::yield();
    }
    fake(XCB_KEY_PRESS, key);
}

void Keyboard::up(int key)
{
    fake(XCB_KEY_RELEASE, key);
    m_lastReleased = key;
}

void Keyboard::write(const QString &text)
{
    for (const QChar character : text)
        type(keysOf(character));
}

void Keyboard::setLocks(quint16 modifiers)
{
    constexpr quint8 all = 0xff;
    xcb_xkb_latch_lock_state(m_connection, XCB_XKB_ID_USE_CORE_KBD, all, quint8(modifiers), false,
                             0, 0, false, 0);
    QTRY_COMPARE(lockState(m_connection)->lockedMods, modifiers);
}

void Keyboard::setGroup(quint8 group)
{
    xcb_xkb_latch_lock_state(m_connection, XCB_XKB_ID_USE_CORE_KBD, 0, 0, true, group, 0, false, 0);
    QTRY_COMPARE(lockState(m_connection)->lockedGroup, group);
}

bool Keyboard::isGrabbed(int key, quint16 modifiers) const
{
    // Nobody else gets a turn in between, so that the trial takes the keys from nobody.
    xcb_grab_server(m_connection);
    const auto trial = xcb_grab_key_checked(m_connection, 0, m_root, modifiers, keyCode(key),
                                            XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    xcb_ungrab_key(m_connection, keyCode(key), m_root, modifiers);
    xcb_ungrab_server(m_connection);
    return owned(xcb_request_check(m_connection, trial)) != nullptr;
}

void Keyboard::grab(int key, quint16 modifiers)
{
    const auto request = xcb_grab_key_checked(m_connection, 0, m_root, modifiers, keyCode(key),
                                              XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    QVERIFY(!owned(xcb_request_check(m_connection, request)));
}

bool Keyboard::grabAll()
{
    const auto request = xcb_grab_keyboard(m_connection, true, m_root, XCB_CURRENT_TIME,
                                           XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    return owned(xcb_grab_keyboard_reply(m_connection, request, nullptr))->status
        == XCB_GRAB_STATUS_SUCCESS;
}

void Keyboard::ungrabAll()
{
    xcb_ungrab_keyboard(m_connection, XCB_CURRENT_TIME);
    sync();
}

void Keyboard::sync() const
{
    owned(xcb_get_input_focus_reply(m_connection, xcb_get_input_focus(m_connection), nullptr));
}

void Keyboard::sendLateRepeat(int key, xcb_window_t window) const
{
    // Any time that no other event has.
    static xcb_timestamp_t time = 0;
    ++time;
    send(XCB_KEY_RELEASE, key, time, window);
    awaitEventLoop(window);
    send(XCB_KEY_PRESS, key, time, window);
}

void Keyboard::send(quint8 eventType, int key, xcb_timestamp_t time, xcb_window_t window) const
{
    xcb_key_press_event_t event = {};
    event.response_type = eventType;
    event.detail = keyCode(key);
    event.time = time;
    event.root = m_root;
    event.event = window;
    event.same_screen = true;
    xcb_send_event(m_connection, false, window, XCB_EVENT_MASK_NO_EVENT,
                   reinterpret_cast<const char *>(&event));
    xcb_flush(m_connection);
}

/// Awaits that the window's program has processed the events so far: it answers a ping by sending
/// it on to the root window.
void Keyboard::awaitEventLoop(xcb_window_t window) const
{
    const uint32_t events = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    xcb_change_window_attributes(m_connection, m_root, XCB_CW_EVENT_MASK, &events);
    xcb_client_message_event_t ping = {};
    ping.response_type = XCB_CLIENT_MESSAGE;
    ping.format = 32;
    ping.window = window;
    ping.type = atom(m_connection, "WM_PROTOCOLS");
    ping.data.data32[0] = atom(m_connection, "_NET_WM_PING");
    ping.data.data32[2] = window;
    xcb_send_event(m_connection, false, window, XCB_EVENT_MASK_NO_EVENT,
                   reinterpret_cast<const char *>(&ping));
    xcb_flush(m_connection);
    const auto isAnswered = [&] {
        while (const auto event = owned(xcb_poll_for_event(m_connection))) {

            const auto &answer = reinterpret_cast<const xcb_client_message_event_t &>(*event);
            if ((event->response_type & ~0x80) == XCB_CLIENT_MESSAGE && answer.type == ping.type)
                return true;
        }
        return false;
    };
    QVERIFY(QTest::qWaitFor(isAnswered));
}

bool Keyboard::isDown(int key) const
{
    const auto reply =
        owned(xcb_query_keymap_reply(m_connection, xcb_query_keymap(m_connection), nullptr));
    return reply->keys[keyCode(key) / 8] & (1 << (keyCode(key) % 8));
}
