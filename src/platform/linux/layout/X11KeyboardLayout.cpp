#include "platform/linux/layout/X11KeyboardLayout.h"

#include "platform/linux/layout/Xkbcommon.h"
#include "platform/linux/x11/Xkb.h"

#include <utility>
#include <xkbcommon/xkbcommon-x11.h>

using namespace std::chrono_literals;

namespace
{
/// One keyboard change arrives as several events, within a few milliseconds. The user does not
/// notice a delay of this length.
constexpr auto layoutSettlingTime = 50ms;

XkbKeymap keymapOf(xcb_connection_t *connection, int32_t keyboard)
{
    return XkbKeymap(xkb_x11_keymap_new_from_device(makeXkbContext().get(), connection, keyboard,
                                                    XKB_KEYMAP_COMPILE_NO_FLAGS));
}

/// Nothing if there is no key map, or if the server does not tell.
std::optional<quint32> layoutInUse(xkb_keymap *keymap, xcb_connection_t *connection,
                                   int32_t keyboard)
{
    if (!keymap)
        return std::nullopt;
    const XkbState state(xkb_x11_state_new_from_device(keymap, connection, keyboard));
    if (!state)
        return std::nullopt;
    return xkb_state_serialize_layout(state.get(), XKB_STATE_LAYOUT_EFFECTIVE);
}
} // namespace

void X11KeyboardLayout::start()
{
    m_connection.emplace();
    if (!m_connection->isOpen()
        || !xkb_x11_setup_xkb_extension(
            m_connection->get(), XKB_X11_MIN_MAJOR_XKB_VERSION, XKB_X11_MIN_MINOR_XKB_VERSION,
            XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS, nullptr, nullptr, nullptr, nullptr))
        return;
    m_settling.setInterval(layoutSettlingTime);
    m_settling.setSingleShot(true);
    connect(&m_settling, &QTimer::timeout, this, &X11KeyboardLayout::read);
    m_notifier.emplace(xcb_get_file_descriptor(m_connection->get()), QSocketNotifier::Read);
    connect(&*m_notifier, &QSocketNotifier::activated, this, &X11KeyboardLayout::readEvents);
    selectEvents();
    read();
}

void X11KeyboardLayout::selectEvents()
{
    constexpr uint16_t partialEvents =
        XCB_XKB_EVENT_TYPE_STATE_NOTIFY | XCB_XKB_EVENT_TYPE_CONTROLS_NOTIFY;
    constexpr uint16_t wholeEvents =
        XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY | XCB_XKB_EVENT_TYPE_MAP_NOTIFY;
    constexpr uint16_t mapParts = XCB_XKB_MAP_PART_KEY_TYPES | XCB_XKB_MAP_PART_KEY_SYMS;
    // Select only the layout in use from the state; otherwise each press of Shift would wake us.
    xcb_xkb_select_events_details_t details = {};
    details.affectState = XCB_XKB_STATE_PART_GROUP_STATE;
    details.stateDetails = XCB_XKB_STATE_PART_GROUP_STATE;
    details.affectCtrls = XCB_XKB_BOOL_CTRL_REPEAT_KEYS;
    details.ctrlDetails = XCB_XKB_BOOL_CTRL_REPEAT_KEYS;
    xcb_xkb_select_events_aux(m_connection->get(), XCB_XKB_ID_USE_CORE_KBD,
                              wholeEvents | partialEvents, 0, wholeEvents, mapParts, mapParts,
                              &details);
}

void X11KeyboardLayout::readEvents()
{
    while (const auto event = owned(xcb_poll_for_event(m_connection->get())))
        m_settling.start();
    // Stop watching a closed connection: it is always readable.
    m_notifier->setEnabled(m_connection->isOpen());
}

void X11KeyboardLayout::read()
{
    auto *const connection = m_connection->get();
    const auto keyboard = xkb_x11_get_core_keyboard_device_id(connection);
    XkbKeymap keymap = keymapOf(connection, keyboard);
    if (const auto layout = layoutInUse(keymap.get(), connection, keyboard))
        setLayout(std::move(keymap), *layout);
    readRepeat();
    // The round trips may have queued events for which the notifier does not wake.
    readEvents();
}

void X11KeyboardLayout::readRepeat()
{
    auto *const connection = m_connection->get();
    const auto request = xcb_xkb_get_controls(connection, XCB_XKB_ID_USE_CORE_KBD);
    const auto controls = owned(xcb_xkb_get_controls_reply(connection, request, nullptr));
    if (controls)
        setKeyRepeat({std::chrono::milliseconds(controls->repeatDelay),
                      std::chrono::milliseconds(controls->repeatInterval)});
}
