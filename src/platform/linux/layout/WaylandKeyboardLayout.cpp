#include "platform/linux/layout/WaylandKeyboardLayout.h"

#include "platform/linux/layout/Xkbcommon.h"

#include <cstring>
#include <sys/mman.h>
#include <unistd.h>
#include <utility>
#include <wayland-client.h>

namespace
{
/// Version 1 of the interfaces suffices here.
constexpr quint32 seatVersion = 1;
/// Compositors list the layouts in the user's order.
constexpr quint32 firstLayout = 0;

template <typename... Arguments>
void ignore(void *, Arguments...)
{
}
} // namespace

struct WaylandKeyboardLayout::Listeners {
    static WaylandKeyboardLayout &layout(void *data)
    {
        return *static_cast<WaylandKeyboardLayout *>(data);
    }

    static constexpr wl_registry_listener registry{
        .global =
            [](void *data, wl_registry *registry, quint32 name, const char *interface, quint32) {
                if (std::strcmp(interface, wl_seat_interface.name) == 0)
                    layout(data).useSeat(registry, name);
            },
        .global_remove = ignore,
    };
    static constexpr wl_seat_listener seat{
        .capabilities =
            [](void *data, wl_seat *, quint32 capabilities) {
                layout(data).useKeyboard(capabilities & WL_SEAT_CAPABILITY_KEYBOARD);
            },
        .name = ignore,
    };
    static constexpr wl_keyboard_listener keyboard{
        .keymap =
            [](void *data, wl_keyboard *, quint32 format, int file, quint32 size) {
                if (format == WL_KEYBOARD_KEYMAP_FORMAT_XKB_V1)
                    layout(data).read(file, size);
                close(file);
            },
        .enter = ignore,
        .leave = ignore,
        .key = ignore,
        .modifiers = ignore,
        .repeat_info = ignore,
    };
};

WaylandKeyboardLayout::~WaylandKeyboardLayout()
{
    if (m_display)
        wl_display_disconnect(m_display);
}

void WaylandKeyboardLayout::start()
{
    m_display = wl_display_connect(nullptr);
    if (!m_display)
        return;
    wl_registry_add_listener(wl_display_get_registry(m_display), &Listeners::registry, this);
    m_notifier.emplace(wl_display_get_fd(m_display), QSocketNotifier::Read);
    connect(&*m_notifier, &QSocketNotifier::activated, this, &WaylandKeyboardLayout::communicate);
    wl_display_flush(m_display);
}

/// Reads pending events and sends the requests that they caused.
void WaylandKeyboardLayout::communicate()
{
    // There is something to read, so this does not block.
    const bool isAlive = wl_display_dispatch(m_display) >= 0;
    wl_display_flush(m_display);
    // Stop watching a closed connection: it is always readable.
    m_notifier->setEnabled(isAlive);
}

void WaylandKeyboardLayout::useSeat(wl_registry *registry, quint32 name)
{
    // Other seats belong to other people.
    if (m_seat)
        return;
    m_seat =
        static_cast<wl_seat *>(wl_registry_bind(registry, name, &wl_seat_interface, seatVersion));
    wl_seat_add_listener(m_seat, &Listeners::seat, this);
}

void WaylandKeyboardLayout::useKeyboard(bool isThere)
{
    if (isThere && !m_keyboard) {
        m_keyboard = wl_seat_get_keyboard(m_seat);
        wl_keyboard_add_listener(m_keyboard, &Listeners::keyboard, this);
    } else if (!isThere && m_keyboard) {
        wl_keyboard_destroy(m_keyboard);
        m_keyboard = nullptr;
    }
}

void WaylandKeyboardLayout::read(int file, quint32 size)
{
    void *const text = mmap(nullptr, size, PROT_READ, MAP_PRIVATE, file, 0);
    if (text == MAP_FAILED)
        return;
    XkbKeymap keymap(
        xkb_keymap_new_from_buffer(makeXkbContext().get(), static_cast<const char *>(text),
                                   strnlen(static_cast<const char *>(text), size),
                                   XKB_KEYMAP_FORMAT_TEXT_V1, XKB_KEYMAP_COMPILE_NO_FLAGS));
    munmap(text, size);
    if (keymap)
        setLayout(std::move(keymap), firstLayout);
}
