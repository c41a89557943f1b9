#include "platform/linux/layout/WaylandKeyboardLayout.h"

#include "platform/linux/layout/Xkbcommon.h"

#include <algorithm>
#include <cstring>
#include <sys/mman.h>
#include <unistd.h>
#include <utility>
#include <wayland-client.h>

namespace
{
/// The first version whose keyboards tell how keys repeat.
constexpr quint32 seatVersion = 4;
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
            [](void *data, wl_registry *registry, quint32 name, const char *interface,
               quint32 version) {
                if (std::strcmp(interface, wl_seat_interface.name) == 0)
                    layout(data).useSeat(registry, name, version);
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
                    layout(data).takeKeymap(file, size);
                else
                    close(file);
            },
        .enter = ignore,
        .leave = ignore,
        .key = ignore,
        .modifiers = ignore,
        .repeat_info = [](void *data, wl_keyboard *, qint32 rate,
                          qint32 delay) { layout(data).takeRepeat(rate, delay); },
    };
};

WaylandKeyboardLayout::WaylandKeyboardLayout(std::unique_ptr<PlasmaLayout> plasmaLayout)
    : m_plasmaLayout(std::move(plasmaLayout))
{
}

WaylandKeyboardLayout::~WaylandKeyboardLayout()
{
    if (m_display)
        wl_display_disconnect(m_display);
    forgetKeymap();
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
    if (m_plasmaLayout) {
        connect(m_plasmaLayout.get(), &PlasmaLayout::changed, this, &WaylandKeyboardLayout::read);
        m_plasmaLayout->start();
    }
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

void WaylandKeyboardLayout::useSeat(wl_registry *registry, quint32 name, quint32 version)
{
    // Other seats belong to other people.
    if (m_seat)
        return;
    m_seat = static_cast<wl_seat *>(
        wl_registry_bind(registry, name, &wl_seat_interface, std::min(version, seatVersion)));
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

void WaylandKeyboardLayout::takeRepeat(int rate, int delay)
{
    // A rate of 0 means that keys do not repeat.
    if (rate > 0 && delay > 0)
        setKeyRepeat({std::chrono::milliseconds(delay), std::chrono::milliseconds(1000 / rate)});
}

void WaylandKeyboardLayout::takeKeymap(int file, quint32 size)
{
    forgetKeymap();
    m_keymapFile = file;
    m_keymapSize = size;
    read();
    if (!m_plasmaLayout)
        forgetKeymap();
}

void WaylandKeyboardLayout::forgetKeymap()
{
    if (m_keymapFile >= 0)
        close(std::exchange(m_keymapFile, -1));
}

void WaylandKeyboardLayout::read()
{
    if (m_keymapFile < 0)
        return;
    void *const text = mmap(nullptr, m_keymapSize, PROT_READ, MAP_PRIVATE, m_keymapFile, 0);
    if (text == MAP_FAILED)
        return;
    XkbKeymap keymap(
        xkb_keymap_new_from_buffer(makeXkbContext().get(), static_cast<const char *>(text),
                                   strnlen(static_cast<const char *>(text), m_keymapSize),
                                   XKB_KEYMAP_FORMAT_TEXT_V1, XKB_KEYMAP_COMPILE_NO_FLAGS));
    munmap(text, m_keymapSize);
    if (!keymap)
        return;
    if (!m_plasmaLayout)
        setLayout(std::move(keymap), firstLayout);
    else
        setLayout(std::move(keymap), m_plasmaLayout->index(), WithSymbols::yes);
}
