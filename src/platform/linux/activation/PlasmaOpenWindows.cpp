#include "platform/linux/activation/PlasmaOpenWindows.h"

#include "platform/linux/base/WaylandEvents.h"

#include <QScopeGuard>
#include <QStringList>
#include <algorithm>
#include <chrono>
#include <plasma-window-management.h>
#include <string_view>
#include <utility>
#include <vector>

using namespace std::chrono_literals;

namespace
{
/// KWin answers within tens of milliseconds even on a busy machine. A long wait does no harm,
/// because no press comes while KWin hangs.
constexpr auto longestLook = 1s;

/// The first version that names windows by UUID, and the last one whose events we know.
constexpr uint32_t firstVersion = 13;
constexpr uint32_t lastVersion = 16;

constexpr auto ignore = [](auto...) {};
} // namespace

struct PlasmaOpenWindows::Window {
    org_kde_plasma_window *handle = nullptr;
    QString applicationId;
    pid_t process = 0;
    uint32_t state = 0;
    org_kde_plasma_window *owner = nullptr;

    static Window &from(void *data) { return *static_cast<Window *>(data); }
    static const org_kde_plasma_window_listener listener;

    bool is(org_kde_plasma_window_management_state flag) const { return state & flag; }
};

const org_kde_plasma_window_listener PlasmaOpenWindows::Window::listener{
    .title_changed = ignore,
    .app_id_changed = [](void *data, org_kde_plasma_window *,
                         const char *id) { from(data).applicationId = QString::fromUtf8(id); },
    .state_changed = [](void *data, org_kde_plasma_window *,
                        uint32_t flags) { from(data).state = flags; },
    .virtual_desktop_changed = ignore,
    .themed_icon_name_changed = ignore,
    .unmapped = ignore,
    .initial_state = ignore,
    .parent_window = [](void *data, org_kde_plasma_window *,
                        org_kde_plasma_window *owner) { from(data).owner = owner; },
    .geometry = ignore,
    .icon_changed = ignore,
    .pid_changed = [](void *data, org_kde_plasma_window *,
                      uint32_t process) { from(data).process = pid_t(process); },
    .virtual_desktop_entered = ignore,
    .virtual_desktop_left = ignore,
    .application_menu = ignore,
    .activity_entered = ignore,
    .activity_left = ignore,
    .resource_name_changed = ignore,
};

struct PlasmaOpenWindows::Session {
    Session()
        : display(wl_display_connect(nullptr))
        , queue(display ? wl_display_create_queue(display) : nullptr)
    {
        if (!display)
            return;
        wrapper = static_cast<wl_display *>(wl_proxy_create_wrapper(display));
        wl_proxy_set_queue(reinterpret_cast<wl_proxy *>(wrapper), queue);
        registry = wl_display_get_registry(wrapper);
        wl_registry_add_listener(registry, &registryListener, this);
        wl_display_flush(display);
    }
    ~Session()
    {
        if (!display)
            return;
        for (const auto &window : windows)
            org_kde_plasma_window_destroy(window->handle);
        if (management)
            org_kde_plasma_window_management_destroy(management);
        wl_registry_destroy(registry);
        wl_proxy_wrapper_destroy(wrapper);
        wl_event_queue_destroy(queue);
        wl_display_disconnect(display);
    }
    Q_DISABLE_COPY_MOVE(Session)

    /// Handles all events that the compositor sends because of the requests so far.
    bool synchronize(QDeadlineTimer deadline) const;

    /// Reads the windows, from the front to the back. Returns false if that is not possible.
    bool read(QDeadlineTimer deadline);

    static const wl_registry_listener registryListener;
    static const org_kde_plasma_window_management_listener managementListener;

    wl_display *const display;
    wl_event_queue *const queue;
    /// The display, with the queue for what it creates.
    wl_display *wrapper = nullptr;
    wl_registry *registry = nullptr;
    org_kde_plasma_window_management *management = nullptr;
    QStringList uuids;
    /// Listeners point to them.
    std::vector<std::unique_ptr<Window>> windows;
};

const wl_registry_listener PlasmaOpenWindows::Session::registryListener{
    .global =
        [](void *data, wl_registry *registry, uint32_t name, const char *interface,
           uint32_t version) {
            constexpr const auto *wanted = &org_kde_plasma_window_management_interface;
            if (interface != std::string_view(wanted->name) || version < firstVersion)
                return;
            auto &self = *static_cast<Session *>(data);
            self.management = static_cast<org_kde_plasma_window_management *>(
                wl_registry_bind(registry, name, wanted, std::min(version, lastVersion)));
            org_kde_plasma_window_management_add_listener(self.management, &managementListener,
                                                          &self);
        },
    .global_remove = ignore,
};

const org_kde_plasma_window_management_listener PlasmaOpenWindows::Session::managementListener{
    .show_desktop_changed = ignore,
    .window = ignore,
    .stacking_order_changed = ignore,
    .stacking_order_uuid_changed =
        [](void *data, org_kde_plasma_window_management *, const char *uuids) {
            static_cast<Session *>(data)->uuids =
                QString::fromUtf8(uuids).split(u';', Qt::SkipEmptyParts);
        },
    .window_with_uuid = ignore,
};

bool PlasmaOpenWindows::Session::synchronize(QDeadlineTimer deadline) const
{
    wl_callback *const callback = wl_display_sync(wrapper);
    bool isDone = false;
    constexpr static wl_callback_listener listener{
        .done = [](void *data, wl_callback *, uint32_t) { *static_cast<bool *>(data) = true; }};
    wl_callback_add_listener(callback, &listener, &isDone);
    while (!isDone && handleNextEvents(display, queue, deadline))
        continue;
    wl_callback_destroy(callback);
    return isDone;
}

bool PlasmaOpenWindows::Session::read(QDeadlineTimer deadline)
{
    // First the interface comes, and then the list.
    if (!display || !synchronize(deadline) || !management || !synchronize(deadline))
        return false;
    std::ranges::reverse(uuids);
    for (const QString &uuid : std::as_const(uuids)) {
        auto window = std::make_unique<Window>();
        window->handle = org_kde_plasma_window_management_get_window_by_uuid(
            management, uuid.toUtf8().constData());
        org_kde_plasma_window_add_listener(window->handle, &Window::listener, window.get());
        windows.push_back(std::move(window));
    }
    return synchronize(deadline);
}

PlasmaOpenWindows::PlasmaOpenWindows(const ActivationTokens &tokens)
    : m_tokens(tokens)
{
}

PlasmaOpenWindows::~PlasmaOpenWindows() = default;

void PlasmaOpenWindows::start()
{
    m_session = std::make_unique<Session>();
}

void PlasmaOpenWindows::request(const WindowQuestions &)
{
    // The answer to an early question would only be older.
}

bool PlasmaOpenWindows::bringToFront(const WindowQuestions & /*questions*/,
                                     const std::function<bool(const OpenWindow &)> &isWanted)
{
    const std::unique_ptr<Session> session = std::move(m_session);
    // KWin would answer the new connection first.
    const auto restart = qScopeGuard([this] { start(); });
    const QDeadlineTimer deadline(longestLook);
    if (!session || !session->read(deadline))
        return false;
    std::vector<const Window *> wanted;
    const Window *front = nullptr;
    for (const auto &window : session->windows) {
        if (window->is(ORG_KDE_PLASMA_WINDOW_MANAGEMENT_STATE_ACTIVE))
            front = window.get();
        const QString &id = window->applicationId;
        if (!window->is(ORG_KDE_PLASMA_WINDOW_MANAGEMENT_STATE_SKIPTASKBAR) && !window->owner
            && isWanted(
                {.instance = id, .className = id, .applicationId = id, .process = window->process}))
            wanted.push_back(window.get());
    }
    if (wanted.empty())
        return false;
    const auto isFront = [&](const Window *window) {
        // A dialog in front stands for the window that it belongs to.
        return window == front || (front && window->handle == front->owner);
    };
    const bool isInFront = std::ranges::any_of(wanted, isFront);
    const Window *const next = isInFront ? wanted.back() : wanted.front();
    if (!isFront(next))
        org_kde_plasma_window_set_state(next->handle, ORG_KDE_PLASMA_WINDOW_MANAGEMENT_STATE_ACTIVE,
                                        ORG_KDE_PLASMA_WINDOW_MANAGEMENT_STATE_ACTIVE);
    // A request that is still on its way would be lost with the connection.
    session->synchronize(deadline);
    return true;
}
