#include "platform/linux/activation/ActivationTokens.h"

#include "platform/linux/base/QtWayland.h"
#include "platform/linux/base/WaylandEvents.h"

#include <chrono>
#include <string_view>
#include <xdg-activation.h>

using namespace std::chrono_literals;

namespace
{
/// An answer takes less than a millisecond unless the compositor is busy.
constexpr auto longestWait = 20ms;

/// KWin shows this interface only to programs whose installed desktop file asks for it, and gives
/// valid tokens to no other program without a focused window.
constexpr std::string_view permission = "org_kde_plasma_window_management";
} // namespace

struct ActivationTokens::Listeners {
    static constexpr wl_registry_listener registry{
        .global =
            [](void *data, wl_registry *registry, uint32_t name, const char *interface, uint32_t) {
                auto &self = *static_cast<ActivationTokens *>(data);
                if (interface == permission)
                    self.m_isPermitted = true;
                if (interface != std::string_view(xdg_activation_v1_interface.name))
                    return;
                self.m_activation = static_cast<xdg_activation_v1 *>(
                    wl_registry_bind(registry, name, &xdg_activation_v1_interface, 1));
                // Tokens are awaited without handling Qt's own events.
                wl_proxy_set_queue(reinterpret_cast<wl_proxy *>(self.m_activation), self.m_queue);
            },
        .global_remove = [](void *, wl_registry *, uint32_t) {},
    };
    static constexpr xdg_activation_token_v1_listener token{
        .done = [](void *data, xdg_activation_token_v1 *,
                   const char *token) { *static_cast<QByteArray *>(data) = token; },
    };
};

ActivationTokens::~ActivationTokens()
{
    if (m_activation)
        xdg_activation_v1_destroy(m_activation);
    if (m_registry)
        wl_registry_destroy(m_registry);
    if (m_queue)
        wl_event_queue_destroy(m_queue);
}

void ActivationTokens::start()
{
    if (!isQtOnWayland())
        return;
    auto *const display = qtWaylandObject<wl_display>("wl_display");
    m_queue = wl_display_create_queue(display);
    m_registry = wl_display_get_registry(display);
    wl_registry_add_listener(m_registry, &Listeners::registry, this);
}

QByteArray ActivationTokens::request()
{
    if (!m_activation || !m_isPermitted)
        return {};
    auto *const display = qtWaylandObject<wl_display>("wl_display");
    auto *const request = xdg_activation_v1_get_activation_token(m_activation);
    QByteArray token;
    xdg_activation_token_v1_add_listener(request, &Listeners::token, &token);
    xdg_activation_token_v1_commit(request);
    const QDeadlineTimer deadline(longestWait);
    while (token.isEmpty() && !deadline.hasExpired()
           && handleNextEvents(display, m_queue, deadline))
        continue;
    xdg_activation_token_v1_destroy(request);
    // What KWin answers instead of refusing.
    return token.startsWith("not-granted") ? QByteArray() : token;
}
