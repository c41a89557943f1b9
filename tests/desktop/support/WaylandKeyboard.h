// A keyboard that presses real keys at a Wayland compositor: KWin or one that is based on wlroots.
#pragma once

#include "support/KeyPresser.h"

struct wl_display;
struct wl_seat;
struct org_kde_kwin_fake_input;
struct xkb_state;
struct zwp_virtual_keyboard_manager_v1;
struct zwp_virtual_keyboard_v1;

/// KWin's keys have the layout that KWin has. Elsewhere it is a keyboard of its own, of the United
/// States, which exists as long as the object.
class WaylandKeyboard : public KeyPresser
{
public:
    WaylandKeyboard();
    /// Lets go of all keys.
    ~WaylandKeyboard() override;

    void sync() const override;

private:
    struct Listeners;

    void down(int key) override { change(key, true); }
    void up(int key) override { change(key, false); }
    void change(int key, bool isDown);
    void makeVirtualKeyboard();

    wl_display *m_display;
    wl_seat *m_seat = nullptr;
    org_kde_kwin_fake_input *m_fakeInput = nullptr;
    zwp_virtual_keyboard_manager_v1 *m_manager = nullptr;
    zwp_virtual_keyboard_v1 *m_keyboard = nullptr;
    /// What is down, as the virtual keyboard has to tell.
    xkb_state *m_state = nullptr;
};
