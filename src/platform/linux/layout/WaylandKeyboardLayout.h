// The keyboard layout of the Wayland compositor.
#pragma once

#include "platform/linux/layout/KeyboardLayout.h"

#include <QSocketNotifier>
#include <optional>

struct wl_display;
struct wl_keyboard;
struct wl_registry;
struct wl_seat;

/// Uses its own connection, which never gets the focus and therefore receives no keys. A compositor
/// reports the layout in use only to the focused client, so the first layout is assumed.
class WaylandKeyboardLayout : public KeyboardLayout
{
public:
    ~WaylandKeyboardLayout() override;

    void start() override;

private:
    /// The listeners for the compositor's events; each passes its event to the object in its first
    /// argument.
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
