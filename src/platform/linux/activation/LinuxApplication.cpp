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

/// Where the user can go on: a sheet over the window has the keyboard in its stead.
QWidget &frontOf(QWidget &window)
{
    QWidget *const sheet = QApplication::activeModalWidget();
    for (const QWidget *owner = sheet; owner; owner = owner->parentWidget()) {
        if (owner == &window)
            return *sheet;
    }
    return window;
}

/// With all sheets that are between the two.
void moveToCurrentWorkspace(const QWidget &window, const QWidget &front)
{
    for (const QWidget *widget = &front; widget; widget = widget->parentWidget()) {
        // What is not on the screen yet appears on the workspace that the user is on.
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
    // Without a token a Wayland compositor gives the focus to new windows only.
    const bool mustBeNew = isWayland() && token.isEmpty() && !front.isActiveWindow();
    if (mustBeNew)
        front.hide();
    moveToCurrentWorkspace(window, front);
    window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
    window.show();
    front.show();
    // A startup id tells a time also in a Wayland session.
    if (!isWayland() && m_activation.x11Time) {
        requestActiveWindow(*window.windowHandle(), *m_activation.x11Time);
        requestActiveWindow(*front.windowHandle(), *m_activation.x11Time);
        return;
    }
    // Where Qt's Wayland plugin looks for it.
    if (!token.isEmpty())
        qputenv("XDG_ACTIVATION_TOKEN", token);
    front.raise();
    front.activateWindow();
}

void LinuxApplication::terminate()
{
    QCoreApplication::quit();
}
