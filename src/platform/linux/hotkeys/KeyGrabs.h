// Manages our passive key grabs at the X server.
#pragma once

#include "platform/linux/keys/KeyNumbers.h"

#include <QtGlobal>
#include <compare>
#include <set>
#include <vector>
#include <xcb/xcb.h>

class X11Connection;

/// A key with the exact modifier state of its grab, lock modifiers included.
struct KeyGrab {
    XKeycode key;
    quint16 modifiers;

    auto operator<=>(const KeyGrab &) const = default;
};

class KeyGrabs
{
public:
    /// The connection must be open and outlive it.
    explicit KeyGrabs(const X11Connection &connection);

    struct Difference {
        std::vector<KeyGrab> toRelease;
        std::vector<KeyGrab> toGrab;
    };

    /// The changes that turn the held grabs into the wanted ones.
    Difference differenceTo(const std::set<KeyGrab> &wanted) const;

    /// Releases and makes these grabs in one round trip. Returns the grabs that another program
    /// holds; these are not ours then.
    std::set<KeyGrab> apply(const Difference &difference);

    /// Returns the grabs that another program holds, in one round trip. The others are taken for a
    /// moment, unless we hold them.
    std::set<KeyGrab> probe(const std::set<KeyGrab> &grabs) const;

    /// Makes the server's events for this grab distinguish presses from repeats, starting with the
    /// next "down".
    void tellRepeats(const KeyGrab &grab);

private:
    xcb_void_cookie_t request(const KeyGrab &grab) const;
    bool isRefused(xcb_void_cookie_t request) const;

    const X11Connection &m_connection;
    bool m_hasXInput;
    std::set<KeyGrab> m_held;
    /// The grabs that have an XInput 2 grab besides the core grab.
    std::set<KeyGrab> m_tellingRepeats;
};
