// A grab of the whole keyboard at the X server.
#pragma once

#include <QAbstractNativeEventFilter>
#include <xcb/xcb.h>

/// All keys go to the window until the grab is destroyed. It is made on an invisible child of the
/// window: KWin takes a window that ends a grab of its own for one that has
/// lost the focus, and then no window is active. Uses Qt's own connection.
class KeyboardGrab final : public QAbstractNativeEventFilter
{
public:
    /// The window must be one of the program's that is on the screen.
    explicit KeyboardGrab(xcb_window_t window);
    ~KeyboardGrab() override;

    /// Grabs again: another program may have held the keyboard, or may have ended the grab since.
    void renew() const;

    bool nativeEventFilter(const QByteArray &eventType, void *message, qintptr *result) override;

private:
    xcb_connection_t *const m_connection;
    const xcb_window_t m_window;
    const xcb_window_t m_child;
};
