#include "support/Windows.h"

#include <QByteArray>
#include <QProcess>
#include <QRegularExpression>
#include <algorithm>
#include <array>
#include <cstdlib>
#include <memory>

using namespace Qt::StringLiterals;

namespace
{
/// Places and sizes are those of the content, wherever the frame is.
constexpr uint32_t contentGravity = 10;

QString output(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.start(program, arguments);
    process.waitForFinished();
    return QString::fromUtf8(process.readAllStandardOutput());
}

/// Sends a message about the window, or about none, to the window manager.
void tellWindowManager(xcb_window_t window, const QByteArray &messageName,
                       const std::array<uint32_t, 5> &values)
{
    auto *const connection = xcb_connect(nullptr, nullptr);
    const auto root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
    if (window == XCB_NONE)
        window = root;
    auto *const name = xcb_intern_atom_reply(
        connection,
        xcb_intern_atom(connection, false, uint16_t(messageName.size()), messageName.constData()),
        nullptr);
    xcb_client_message_event_t message = {};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = name->atom;
    std::ranges::copy(values, message.data.data32);
    std::free(name);
    xcb_send_event(connection, false, root,
                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char *>(&message));
    // A round trip, or the server may drop the message of a client that leaves.
    std::free(xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
    xcb_disconnect(connection);
}

/// The windows that a property of the root window names.
QStringList rootWindows(const QString &property)
{
    const QString windows =
        output(u"xprop"_s, {u"-root"_s, property}).section(u"# "_s, 1).trimmed();
    return windows.split(u", "_s, Qt::SkipEmptyParts);
}

QString titleOf(const QString &window)
{
    return output(u"xprop"_s, {u"-id"_s, window, u"WM_NAME"_s}).section(u'"', 1, 1);
}

/// -1 if it does not have the property.
int cardinal(const QStringList &window, const QString &property)
{
    const QString text = output(u"xprop"_s, window + QStringList(property));
    bool isNumber = false;
    const int value = text.section(u"= "_s, 1).trimmed().toInt(&isNumber);
    return isNumber ? value : -1;
}

int number(const QString &text, const QString &label)
{
    const QRegularExpression pattern(label + u":\\s*(-?\\d+)"_s);
    return pattern.match(text).captured(1).toInt();
}
} // namespace

std::optional<xcb_window_t> activeWindow()
{
    const auto window = rootWindows(u"_NET_ACTIVE_WINDOW"_s).value(0).toUInt(nullptr, 16);
    return window == XCB_NONE ? std::nullopt : std::optional(window);
}

QString activeTitle()
{
    return titleOf(rootWindows(u"_NET_ACTIVE_WINDOW"_s).value(0));
}

std::optional<xcb_window_t> windowOnScreen(const QString &title)
{
    // Programs have more windows of that name, which nobody ever sees.
    for (const QString &window : rootWindows(u"_NET_CLIENT_LIST"_s)) {
        const QString state = output(u"xwininfo"_s, {u"-id"_s, window});
        if (titleOf(window) == title && state.contains(u"Map State: IsViewable"_s))
            return window.toUInt(nullptr, 16);
    }
    return std::nullopt;
}

QRect geometryOf(xcb_window_t window)
{
    const QString text = output(u"xwininfo"_s, {u"-id"_s, QString::number(window)});
    return {number(text, u"Absolute upper-left X"_s), number(text, u"Absolute upper-left Y"_s),
            number(text, u"Width"_s), number(text, u"Height"_s)};
}

void moveWindow(xcb_window_t window, const QPoint &place)
{
    constexpr uint32_t hasPlace = 3 << 8;
    tellWindowManager(window, "_NET_MOVERESIZE_WINDOW",
                      {contentGravity | hasPlace, uint32_t(place.x()), uint32_t(place.y())});
}

void resizeWindow(xcb_window_t window, const QSize &size)
{
    constexpr uint32_t hasSize = 3 << 10;
    tellWindowManager(
        window, "_NET_MOVERESIZE_WINDOW",
        {contentGravity | hasSize, 0, 0, uint32_t(size.width()), uint32_t(size.height())});
}

void closeWindow(xcb_window_t window)
{
    tellWindowManager(window, "_NET_CLOSE_WINDOW", {});
}

void minimizeWindow(xcb_window_t window)
{
    constexpr uint32_t iconicState = 3;
    tellWindowManager(window, "WM_CHANGE_STATE", {iconicState});
}

void setWorkspaces(int count)
{
    tellWindowManager(XCB_NONE, "_NET_NUMBER_OF_DESKTOPS", {uint32_t(count)});
}

void switchToWorkspace(int workspace)
{
    tellWindowManager(XCB_NONE, "_NET_CURRENT_DESKTOP", {uint32_t(workspace), XCB_CURRENT_TIME});
}

int currentWorkspace()
{
    return cardinal({u"-root"_s}, u"_NET_CURRENT_DESKTOP"_s);
}

int workspaceOf(xcb_window_t window)
{
    return cardinal({u"-id"_s, QString::number(window)}, u"_NET_WM_DESKTOP"_s);
}
