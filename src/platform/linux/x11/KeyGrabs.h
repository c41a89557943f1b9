// The passive key grabs that we hold at the X server.
#pragma once

#include <QtGlobal>
#include <compare>
#include <set>
#include <vector>
#include <xcb/xcb.h>

class X11Connection;

/// A key with the exact modifier state that it is grabbed with, lock modifiers included.
struct KeyGrab {
    xcb_keycode_t key;
    quint16 modifiers;

    auto operator<=>(const KeyGrab &) const = default;
};

class KeyGrabs
{
public:
    /// The connection must outlive it.
    explicit KeyGrabs(const X11Connection &connection);

    struct Difference {
        std::vector<KeyGrab> surplus;
        std::vector<KeyGrab> lacking;
    };

    /// What keeps the held grabs from being the wanted ones.
    Difference differenceTo(const std::set<KeyGrab> &wanted) const;

    /// Lets go of the surplus and takes what is lacking, in one round trip. Returns the grabs
    /// that another program holds; those are not held by us then.
    std::set<KeyGrab> apply(const Difference &difference);

    /// Which of them another program holds, in one round trip. The others are taken for a moment,
    /// unless we hold them.
    std::set<KeyGrab> tryOut(const std::set<KeyGrab> &grabs) const;

private:
    xcb_void_cookie_t request(const KeyGrab &grab) const;
    bool isRefused(xcb_void_cookie_t request) const;

    const X11Connection &m_connection;
    std::set<KeyGrab> m_held;
};
