// The passive key grabs that we hold at the X server.
#pragma once

#include "platform/linux/keys/KeyNumbers.h"

#include <QtGlobal>
#include <compare>
#include <set>
#include <vector>
#include <xcb/xcb.h>

class X11Connection;

/// A key with the exact modifier state that it is grabbed with, lock modifiers included.
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

    /// What keeps the held grabs from being the wanted ones.
    Difference differenceTo(const std::set<KeyGrab> &wanted) const;

    /// Releases the one list and grabs the other, in one round trip. Returns the grabs
    /// that another program holds; those are not held by us then.
    std::set<KeyGrab> apply(const Difference &difference);

    /// Which of them another program holds, in one round trip. The others are taken for a moment,
    /// unless we hold them.
    std::set<KeyGrab> probe(const std::set<KeyGrab> &grabs) const;

    /// From the next "down" on, the server's events for this grab tell presses from repeats.
    void tellRepeats(const KeyGrab &grab);

private:
    xcb_void_cookie_t request(const KeyGrab &grab) const;
    bool isRefused(xcb_void_cookie_t request) const;

    const X11Connection &m_connection;
    bool m_hasXInput;
    std::set<KeyGrab> m_held;
    /// Those that have an XInput 2 grab beside the core grab.
    std::set<KeyGrab> m_tellingRepeats;
};
