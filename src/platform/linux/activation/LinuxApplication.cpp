#include "platform/linux/activation/LinuxApplication.h"

#include "platform/linux/activation/ActiveWindow.h"
#include "platform/linux/activation/UserActivation.h"

#include <QApplication>
#include <QWidget>
#include <QWindow>

namespace
{
bool isWayland()
{
    return QGuiApplication::platformName() == u"wayland";
}

/// The window that accepts input: the sheet if one is open over the window, else the window itself.
QWidget &frontOf(QWidget &window)
{
    QWidget *const sheet = QApplication::activeModalWidget();
    for (const QWidget *owner = sheet; owner; owner = owner->parentWidget()) {
        if (owner == &window)
            return *sheet;
    }
    return window;
}

/// Moves the window, the front sheet and all sheets between them.
void moveToCurrentWorkspace(const QWidget &window, const QWidget &front)
{
    for (const QWidget *widget = &front; widget; widget = widget->parentWidget()) {
        // Hidden windows appear on the current workspace anyway.
        if (widget->isWindow() && widget->isVisible())
            moveToCurrentWorkspace(*widget->windowHandle());
        if (widget == &window)
            return;
    }
}
} // namespace

LinuxApplication::LinuxApplication(UserActivation &activation)
    : m_activation(activation)
{
}

void LinuxApplication::activate(QWidget &window)
{
    const QByteArray token = std::exchange(m_activation.activationToken, {});
    QWidget &front = frontOf(window);
    // Without a token, a Wayland compositor focuses new windows only.
    const bool mustBeNew = isWayland() && token.isEmpty() && !front.isActiveWindow();
    if (mustBeNew)
        front.hide();
    moveToCurrentWorkspace(window, front);
    window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
    window.show();
    front.show();
    // Startup ids carry a time in Wayland sessions too, so x11Time alone does not imply X11.
    if (!isWayland() && m_activation.x11Time) {
        requestActiveWindow(*window.windowHandle(), *m_activation.x11Time);
        requestActiveWindow(*front.windowHandle(), *m_activation.x11Time);
        return;
    }
    // Qt's Wayland plugin reads the token from this variable.
    if (!token.isEmpty())
        qputenv("XDG_ACTIVATION_TOKEN", token);
    front.raise();
    front.activateWindow();
}

void LinuxApplication::terminate()
{
    QCoreApplication::quit();
}
