#include "platform/linux/activation/LinuxApplication.h"

#include "platform/linux/activation/UserActivation.h"
#include "platform/linux/base/ApplicationId.h"
#include "platform/linux/x11/Atom.h"
#include "platform/linux/x11/WindowManager.h"

#include <QApplication>
#include <QUuid>
#include <QWidget>
#include <QWindow>
#include <array>
#include <optional>

using namespace Qt::StringLiterals;

namespace
{
/// Qt's connection; null if the program does not run on X11.
xcb_connection_t *qtConnection()
{
    const auto *const x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return x11 ? x11->connection() : nullptr;
}

xcb_window_t rootOf(xcb_connection_t *connection)
{
    return xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
}

std::optional<uint32_t> numberIn(xcb_connection_t *connection, xcb_window_t window,
                                 const QByteArray &property)
{
    const auto request = xcb_get_property(connection, false, window, atom(connection, property),
                                          XCB_ATOM_CARDINAL, 0, 1);
    const auto reply = owned(xcb_get_property_reply(connection, request, nullptr));
    if (!reply || reply->format != 32 || reply->length != 1)
        return std::nullopt;
    return *static_cast<const uint32_t *>(xcb_get_property_value(reply.get()));
}

/// Sends a message about the window to the window manager.
void send(xcb_connection_t *connection, xcb_window_t window, const QByteArray &name,
          const std::array<uint32_t, 2> &values)
{
    sendToWindowManager(connection, rootOf(connection), window, atom(connection, name), values);
}

/// The source indication of normal applications in EWMH messages.
constexpr uint32_t fromApplication = 1;

/// Asks the window manager to focus the shown window on behalf of the user action at that X server
/// time. Qt's own request would carry the time of the last user event that Qt itself saw. Does
/// nothing if the program does not run on X11.
void requestActiveWindow(const QWindow &window, quint32 userTime)
{
    auto *const connection = qtConnection();
    if (!connection)
        return;
    const auto id = xcb_window_t(window.winId());
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, id,
                        atom(connection, "_NET_WM_USER_TIME"), XCB_ATOM_CARDINAL, 32, 1, &userTime);
    send(connection, id, "_NET_ACTIVE_WINDOW", {fromApplication, userTime});
}

/// Moves the window to the current workspace if it is on another one. Most window managers do not
/// focus a window on another workspace on request; they only mark it. Does nothing if the program
/// does not run on X11.
void moveToCurrentWorkspace(const QWindow &window)
{
    auto *const connection = qtConnection();
    if (!connection)
        return;
    // The EWMH desktop number of windows on all workspaces.
    constexpr uint32_t onAll = 0xFFFFFFFF;
    const auto id = xcb_window_t(window.winId());
    const auto current = numberIn(connection, rootOf(connection), "_NET_CURRENT_DESKTOP");
    const auto own = numberIn(connection, id, "_NET_WM_DESKTOP");
    if (current && own && *own != *current && *own != onAll)
        send(connection, id, "_NET_WM_DESKTOP", {*current, fromApplication});
}

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

void LinuxApplication::activateAfterDrop(QWidget &window)
{
    // Wayland has no token for a drop; compositors focus the windows that it opens.
    if (isWayland())
        return;
    m_activation.happenedNow();
    activate(window);
}

QString LinuxApplication::fireCommand(const QUuid &entry) const
{
    return u"gapplication action %1 fire \"'%2'\""_s.arg(
        applicationId, entry.toString(QUuid::WithoutBraces).toUpper());
}

void LinuxApplication::terminate()
{
    QCoreApplication::quit();
}
