#include "support/WaylandKeyboard.h"

#include <QElapsedTimer>
#include <cstdlib>
#include <cstring>
#include <kwin-fake-input.h>
#include <sys/mman.h>
#include <unistd.h>
#include <virtual-keyboard.h>
#include <xkbcommon/xkbcommon.h>

namespace
{
/// The offset of the key codes of XKB.
constexpr int evdevOffset = 8;
/// The first version of KWin's fake input that has keys.
constexpr quint32 fakeInputVersion = 4;

quint32 now()
{
    static QElapsedTimer timer;
    if (!timer.isValid())
        timer.start();
    return quint32(timer.elapsed());
}

/// A file in memory with the text, including its null character.
int fileWith(const char *text)
{
    const size_t size = std::strlen(text) + 1;
    const int file = memfd_create("keymap", MFD_CLOEXEC);
    if (write(file, text, size) != ssize_t(size))
        qFatal("cannot write a key map");
    return file;
}
} // namespace

struct WaylandKeyboard::Listeners {
    template <typename Object>
    static void bind(Object *&object, wl_registry *registry, quint32 name,
                     const wl_interface &interface, quint32 version)
    {
        if (!object)
            object = static_cast<Object *>(wl_registry_bind(registry, name, &interface, version));
    }

    static constexpr wl_registry_listener registry{
        .global =
            [](void *data, wl_registry *registry, quint32 name, const char *interface, quint32) {
                auto &self = *static_cast<WaylandKeyboard *>(data);
                if (!std::strcmp(interface, wl_seat_interface.name))
                    bind(self.m_seat, registry, name, wl_seat_interface, 1);
                else if (!std::strcmp(interface, org_kde_kwin_fake_input_interface.name))
                    bind(self.m_fakeInput, registry, name, org_kde_kwin_fake_input_interface,
                         fakeInputVersion);
                else if (!std::strcmp(interface, zwp_virtual_keyboard_manager_v1_interface.name))
                    bind(self.m_manager, registry, name, zwp_virtual_keyboard_manager_v1_interface,
                         1);
            },
        .global_remove = [](void *, wl_registry *, quint32) {},
    };
};

WaylandKeyboard::WaylandKeyboard()
    : m_display(wl_display_connect(nullptr))
{
    if (!m_display)
        qFatal("there is no Wayland compositor");
    wl_registry_add_listener(wl_display_get_registry(m_display), &Listeners::registry, this);
    sync();
    if (m_fakeInput)
        org_kde_kwin_fake_input_authenticate(m_fakeInput, "Corvane", "tests");
    else if (m_manager && m_seat)
        makeVirtualKeyboard();
    else
        qFatal("this compositor lets nobody press keys");
    sync();
}

WaylandKeyboard::~WaylandKeyboard()
{
    releaseAll();
    sync();
    xkb_state_unref(m_state);
    wl_display_disconnect(m_display);
}

void WaylandKeyboard::makeVirtualKeyboard()
{
    m_keyboard = zwp_virtual_keyboard_manager_v1_create_virtual_keyboard(m_manager, m_seat);
    xkb_context *const context = xkb_context_new(XKB_CONTEXT_NO_FLAGS);
    constexpr xkb_rule_names names{
        .rules = "evdev", .model = "pc105", .layout = "us", .variant = "", .options = ""};
    xkb_keymap *const keymap =
        xkb_keymap_new_from_names(context, &names, XKB_KEYMAP_COMPILE_NO_FLAGS);
    m_state = xkb_state_new(keymap);
    char *const text = xkb_keymap_get_as_string(keymap, XKB_KEYMAP_FORMAT_TEXT_V1);
    const int file = fileWith(text);
    zwp_virtual_keyboard_v1_keymap(m_keyboard, WL_KEYBOARD_KEYMAP_FORMAT_XKB_V1, file,
                                   quint32(std::strlen(text)) + 1);
    sync();
    close(file);
    std::free(text);
    xkb_keymap_unref(keymap);
    xkb_context_unref(context);
}

void WaylandKeyboard::sync() const
{
    if (wl_display_roundtrip(m_display) < 0)
        qWarning("the Wayland compositor has gone");
}

void WaylandKeyboard::change(int key, bool isDown)
{
    if (m_fakeInput) {
        org_kde_kwin_fake_input_keyboard_key(m_fakeInput, quint32(key), isDown);
    } else {
        zwp_virtual_keyboard_v1_key(m_keyboard, now(), quint32(key), isDown);
        xkb_state_update_key(m_state, quint32(key + evdevOffset),
                             isDown ? XKB_KEY_DOWN : XKB_KEY_UP);
        const auto modifiers = [this](xkb_state_component component) {
            return xkb_state_serialize_mods(m_state, component);
        };
        zwp_virtual_keyboard_v1_modifiers(m_keyboard, modifiers(XKB_STATE_MODS_DEPRESSED),
                                          modifiers(XKB_STATE_MODS_LATCHED),
                                          modifiers(XKB_STATE_MODS_LOCKED), 0);
    }
    sync();
}
