#include "platform/linux/recording/ShortcutsInhibitor.h"

#include "platform/linux/base/QtWayland.h"

#include <QEvent>
#include <cstring>
#include <keyboard-shortcuts-inhibit.h>
#include <utility>

using namespace Qt::StringLiterals;

namespace
{
/// The surface of a window; null while the window is hidden.
wl_surface *surfaceOf(QWindow &window)
{
    return static_cast<wl_surface *>(
        QGuiApplication::platformNativeInterface()->nativeResourceForWindow("surface", &window));
}
} // namespace

struct ShortcutsInhibitor::Listeners {
    static constexpr wl_registry_listener registry{
        .global =
            [](void *data, wl_registry *registry, uint32_t name, const char *interface, uint32_t) {
                constexpr const auto *wanted = &zwp_keyboard_shortcuts_inhibit_manager_v1_interface;
                if (std::strcmp(interface, wanted->name) != 0)
                    return;
                auto &self = *static_cast<ShortcutsInhibitor *>(data);
                self.m_manager = static_cast<zwp_keyboard_shortcuts_inhibit_manager_v1 *>(
                    wl_registry_bind(registry, name, wanted, 1));
                self.inhibit();
            },
        .global_remove = [](void *, wl_registry *, uint32_t) {},
    };
};

ShortcutsInhibitor::~ShortcutsInhibitor()
{
    letGo();
    if (m_manager)
        zwp_keyboard_shortcuts_inhibit_manager_v1_destroy(m_manager);
    if (m_registry)
        wl_registry_destroy(m_registry);
}

void ShortcutsInhibitor::hold(QWindow &window)
{
    if (!isQtOnWayland())
        return;
    m_isEnding = false;
    if (m_window != &window) {
        letGo();
        m_window = &window;
        window.installEventFilter(this);
    }
    if (!m_registry)
        findManager();
    inhibit();
}

/// Asks for the compositor's interfaces. They arrive in the event loop.
void ShortcutsInhibitor::findManager()
{
    m_registry = wl_display_get_registry(qtWaylandObject<wl_display>("wl_display"));
    wl_registry_add_listener(m_registry, &Listeners::registry, this);
}

void ShortcutsInhibitor::inhibit()
{
    // A second inhibitor of the same surface would be a protocol error.
    if (!m_manager || !m_window || m_inhibitor)
        return;
    wl_surface *const surface = surfaceOf(*m_window);
    auto *const seat = qtWaylandObject<wl_seat>("wl_seat");
    if (surface && seat)
        m_inhibitor =
            zwp_keyboard_shortcuts_inhibit_manager_v1_inhibit_shortcuts(m_manager, surface, seat);
}

void ShortcutsInhibitor::letGoWhenKeysAreUp()
{
    m_isEnding = true;
    if (!m_window || !m_window->isActive())
        letGo();
}

void ShortcutsInhibitor::keysAreUp()
{
    if (m_isEnding)
        letGo();
}

void ShortcutsInhibitor::letGo()
{
    m_isEnding = false;
    uninhibit();
    if (m_window)
        m_window->removeEventFilter(this);
    m_window = nullptr;
}

void ShortcutsInhibitor::uninhibit()
{
    if (!m_inhibitor)
        return;
    zwp_keyboard_shortcuts_inhibitor_v1_destroy(std::exchange(m_inhibitor, nullptr));
    // Flush now instead of when the event loop is idle, so that the desktop misses no press.
    wl_display_flush(qtWaylandObject<wl_display>("wl_display"));
}

bool ShortcutsInhibitor::eventFilter(QObject *, QEvent *event)
{
    switch (event->type()) {
    case QEvent::Hide:
    case QEvent::PlatformSurface:
        // The inhibitor belongs to the surface, which a hidden window loses.
        uninhibit();
        if (m_isEnding)
            letGo();
        break;
    case QEvent::Expose:
        // A window that is hidden and shown at once does not become inactive in between.
        inhibit();
        break;
    case QEvent::FocusOut:
        // Otherwise keep it: the compositor's question to the user takes the focus too, and would
        // be asked again with each new inhibitor.
        if (m_isEnding)
            letGo();
        break;
    default:
        break;
    }
    return false;
}
