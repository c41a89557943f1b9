// The keyboard layout of the Wayland compositor.
#pragma once

#include "platform/linux/layout/KeyboardLayout.h"

#include <QSocketNotifier>
#include <optional>

struct wl_display;
struct wl_keyboard;
struct wl_registry;
struct wl_seat;

/// Has a connection of its own, which never gets the focus and therefore hears no keys. A
/// compositor tells the layout in use only to who has the focus; that is taken to be the first one.
class WaylandKeyboardLayout : public KeyboardLayout
{
public:
    ~WaylandKeyboardLayout() override;

    void start() override;

private:
    /// What the compositor tells of, each handed to the object that is its first argument.
    struct Listeners;

    void communicate();
    void useSeat(wl_registry *registry, quint32 name);
    void useKeyboard(bool isThere);
    void read(int file, quint32 size);

    wl_display *m_display = nullptr;
    wl_seat *m_seat = nullptr;
    wl_keyboard *m_keyboard = nullptr;
    std::optional<QSocketNotifier> m_notifier;
};
