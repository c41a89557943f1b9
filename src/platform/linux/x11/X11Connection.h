// A private connection to the X server, separate from that of the GUI library.
#pragma once

#include <cstdlib>
#include <memory>
#include <xcb/xcb.h>

/// Frees replies and events of xcb with free().
struct XcbFree {
    void operator()(void *memory) const { std::free(memory); }
};
template <typename Reply>
auto owned(Reply *reply)
{
    return std::unique_ptr<Reply, XcbFree>(reply);
}

class X11Connection
{
public:
    /// Connects to the display that DISPLAY names; isOpen() tells whether that worked.
    X11Connection();
    ~X11Connection();
    X11Connection(const X11Connection &) = delete;
    X11Connection &operator=(const X11Connection &) = delete;

    /// Also false after the server has gone.
    bool isOpen() const { return xcb_connection_has_error(m_connection) == 0; }
    /// Whether the server supports XKB, which tells where the physical keys are. Requests to a
    /// missing extension would close the connection.
    bool hasXkb() const;
    /// Whether the server supports XInput 2, which tells a press from an auto-repeat.
    bool hasXInput() const;
    xcb_connection_t *get() const { return m_connection; }
    /// Valid only while the connection is open.
    xcb_window_t root() const { return m_root; }

private:
    xcb_connection_t *m_connection;
    xcb_window_t m_root = XCB_NONE;
};
