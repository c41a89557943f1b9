// The keyboard layout of the Wayland compositor.
#pragma once

#include "platform/linux/layout/KeyboardLayout.h"
#include "platform/linux/layout/PlasmaLayout.h"

#include <QSocketNotifier>
#include <memory>
#include <optional>

struct wl_display;
struct wl_keyboard;
struct wl_registry;
struct wl_seat;

/// Uses its own connection, which never gets the focus and therefore receives no keys. A compositor
/// reports the layout in use only to the focused client, so the first layout is assumed, except on
/// Plasma.
class WaylandKeyboardLayout : public KeyboardLayout
{
public:
    /// Pass Plasma's layout on Plasma, else null.
    explicit WaylandKeyboardLayout(std::unique_ptr<PlasmaLayout> plasmaLayout);
    ~WaylandKeyboardLayout() override;

    void start() override;

private:
    /// The listeners for the compositor's events; each passes its event to the object in its first
    /// argument.
    struct Listeners;

    void communicate();
    void useSeat(wl_registry *registry, quint32 name, quint32 version);
    void useKeyboard(bool isThere);
    void takeKeymap(int file, quint32 size);
    void forgetKeymap();
    void takeRepeat(int rate, int delay);
    void read();

    const std::unique_ptr<PlasmaLayout> m_plasmaLayout;
    wl_display *m_display = nullptr;
    wl_seat *m_seat = nullptr;
    wl_keyboard *m_keyboard = nullptr;
    std::optional<QSocketNotifier> m_notifier;
    /// The text of the key map, in memory that is shared with the compositor. It is read again when
    /// another of its layouts is used. -1 if there is none.
    int m_keymapFile = -1;
    quint32 m_keymapSize = 0;
};
