#include "platform/linux/hotkeys/KeyGrabs.h"

#include "platform/linux/x11/X11Connection.h"

#include <algorithm>
#include <iterator>
#include <xcb/xinput.h>

namespace
{
/// Value of owner_events that reports presses to us only.
constexpr uint8_t reportToUsOnly = 0;
constexpr auto allKeyboards = xcb_input_device_id_t(XCB_INPUT_DEVICE_ALL_MASTER);
} // namespace

KeyGrabs::KeyGrabs(const X11Connection &connection)
    : m_connection(connection)
    , m_hasXInput(connection.hasXInput())
{
    if (m_hasXInput) {
        constexpr uint16_t major = 2;
        constexpr uint16_t minor = 0;
        xcb_discard_reply(connection.get(),
                          xcb_input_xi_query_version(connection.get(), major, minor).sequence);
    }
}

KeyGrabs::Difference KeyGrabs::differenceTo(const std::set<KeyGrab> &wanted) const
{
    Difference difference;
    std::ranges::set_difference(m_held, wanted, std::back_inserter(difference.toRelease));
    std::ranges::set_difference(wanted, m_held, std::back_inserter(difference.toGrab));
    return difference;
}

std::set<KeyGrab> KeyGrabs::apply(const Difference &difference)
{
    auto *const connection = m_connection.get();
    const auto root = m_connection.root();
    for (const KeyGrab &grab : difference.toRelease) {
        xcb_ungrab_key(connection, xcb_keycode_t(grab.key), root, grab.modifiers);
        m_held.erase(grab);
        if (m_tellingRepeats.erase(grab) > 0) {
            const uint32_t modifiers = grab.modifiers;
            xcb_input_xi_passive_ungrab_device(connection, root, quint32(grab.key), allKeyboards, 1,
                                               XCB_INPUT_GRAB_TYPE_KEYCODE, &modifiers);
        }
    }

    std::vector<xcb_void_cookie_t> requests;
    for (const KeyGrab &grab : difference.toGrab)
        requests.push_back(request(grab));

    std::set<KeyGrab> refused;
    for (size_t i = 0; i < requests.size(); ++i)
        (isRefused(requests[i]) ? refused : m_held).insert(difference.toGrab[i]);
    xcb_flush(connection);
    return refused;
}

std::set<KeyGrab> KeyGrabs::probe(const std::set<KeyGrab> &grabs) const
{
    // Skip the grabs that we hold: releasing one would leave its combination dead.
    std::vector<KeyGrab> probed;
    std::ranges::set_difference(grabs, m_held, std::back_inserter(probed));
    std::vector<xcb_void_cookie_t> requests;
    for (const KeyGrab &grab : probed) {
        requests.push_back(request(grab));
        // Has no effect if the grab was refused.
        xcb_ungrab_key(m_connection.get(), xcb_keycode_t(grab.key), m_connection.root(),
                       grab.modifiers);
    }

    std::set<KeyGrab> refused;
    for (size_t i = 0; i < requests.size(); ++i) {
        if (isRefused(requests[i]))
            refused.insert(probed[i]);
    }
    return refused;
}

/// Adds an XInput 2 grab, whose events tell repeats from presses; those of a core grab do not. Both
/// are needed, because only core grabs exclude the grabs of most other programs. The newer one gets
/// the key.
void KeyGrabs::tellRepeats(const KeyGrab &grab)
{
    if (!m_hasXInput || !m_held.contains(grab) || !m_tellingRepeats.insert(grab).second)
        return;
    constexpr uint32_t events =
        XCB_INPUT_XI_EVENT_MASK_KEY_PRESS | XCB_INPUT_XI_EVENT_MASK_KEY_RELEASE;
    const uint32_t modifiers = grab.modifiers;
    // If another program holds an XInput 2 grab for the same keys, the core grab remains in effect.
    xcb_discard_reply(m_connection.get(),
                      xcb_input_xi_passive_grab_device(
                          m_connection.get(), XCB_CURRENT_TIME, m_connection.root(), XCB_NONE,
                          quint32(grab.key), allKeyboards, 1, 1, XCB_INPUT_GRAB_TYPE_KEYCODE,
                          XCB_INPUT_GRAB_MODE_22_ASYNC, XCB_INPUT_GRAB_MODE_22_ASYNC,
                          XCB_INPUT_GRAB_OWNER_NO_OWNER, &events, &modifiers)
                          .sequence);
}

xcb_void_cookie_t KeyGrabs::request(const KeyGrab &grab) const
{
    // Asynchronous, because a synchronous grab would freeze the keyboard if we hung.
    return xcb_grab_key_checked(m_connection.get(), reportToUsOnly, m_connection.root(),
                                grab.modifiers, xcb_keycode_t(grab.key), XCB_GRAB_MODE_ASYNC,
                                XCB_GRAB_MODE_ASYNC);
}

bool KeyGrabs::isRefused(xcb_void_cookie_t request) const
{
    return owned(xcb_request_check(m_connection.get(), request)) != nullptr;
}
