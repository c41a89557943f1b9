#include "platform/linux/LinuxApplication.h"

#include "platform/linux/UserActivation.h"
#include "platform/linux/x11/ActiveWindow.h"

#include <QGuiApplication>
#include <QWidget>
#include <QWindow>

namespace
{
bool isWayland()
{
    return QGuiApplication::platformName() == u"wayland";
}
} // namespace

LinuxApplication::LinuxApplication(UserActivation &activation)
    : m_activation(activation)
{
}

void LinuxApplication::activate(QWidget &window)
{
    const QByteArray token = std::exchange(m_activation.activationToken, {});
    // Without a token a Wayland compositor gives the focus to new windows only.
    const bool mustBeNew = isWayland() && token.isEmpty() && !window.isActiveWindow();
    if (mustBeNew)
        window.hide();
    window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
    window.show();
    // A startup id tells a time also in a Wayland session.
    if (!isWayland() && m_activation.x11Time) {
        requestActiveWindow(*window.windowHandle(), *m_activation.x11Time);
        return;
    }
    // Where Qt's Wayland plugin looks for it.
    if (!token.isEmpty())
        qputenv("XDG_ACTIVATION_TOKEN", token);
    window.raise();
    window.activateWindow();
}

void LinuxApplication::terminate()
{
    QCoreApplication::quit();
}
