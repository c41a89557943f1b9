#include "platform/linux/recording/LinuxEventMonitor.h"

#include "platform/linux/recording/KeyCapture.h"

#include <memory>

LinuxEventMonitor::LinuxEventMonitor(X11HotkeyService *hotkeys)
    : m_hotkeys(hotkeys)
{
}

std::optional<Registration>
LinuxEventMonitor::addLocalMonitorForEvents(QWidget &widget,
                                            std::function<void(const KeyEvent &)> handler)
{
    auto capture =
        std::make_shared<KeyCapture>(widget, std::move(handler), m_repeatFilter, m_hotkeys);
    return Registration([capture = std::move(capture)]() mutable { capture.reset(); });
}
