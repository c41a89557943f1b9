#include "platform/linux/recording/LinuxEventMonitor.h"

#include "platform/linux/recording/KeyCapture.h"

LinuxEventMonitor::LinuxEventMonitor(SessionType session, X11HotkeyService *x11Hotkeys,
                                     WaylandHotkeyService *waylandHotkeys)
    : m_x11Hotkeys(x11Hotkeys)
    , m_waylandHotkeys(waylandHotkeys)
{
    if (session != SessionType::wayland)
        return;
    m_inhibitor.emplace();
    QObject::connect(&m_repeatFilter, &HeldKeyRepeatFilter::allKeysUp, &*m_inhibitor,
                     &ShortcutsInhibitor::keysAreUp);
}

std::optional<Registration>
LinuxEventMonitor::addLocalMonitorForEvents(QWidget &widget,
                                            std::function<void(const KeyEvent &)> handler)
{
    auto capture = std::make_shared<KeyCapture>(
        widget, std::move(handler), m_repeatFilter,
        KeyCapture::Services{.x11Hotkeys = m_x11Hotkeys,
                             .waylandHotkeys = m_waylandHotkeys,
                             .inhibitor = m_inhibitor ? &*m_inhibitor : nullptr});
    m_latestCapture = capture;
    return Registration([capture = std::move(capture)]() mutable { capture.reset(); });
}

bool LinuxEventMonitor::isCapturing() const
{
    const auto capture = m_latestCapture.lock();
    return capture && capture->isOn();
}
