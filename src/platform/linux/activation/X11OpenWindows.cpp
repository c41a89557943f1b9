#include "platform/linux/activation/X11OpenWindows.h"

#include "platform/linux/x11/WindowManager.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

namespace
{
/// The atoms that are used, in this order.
enum Name {
    stackedWindows,
    allWindows,
    activeWindow,
    currentWorkspace,
    windowClass,
    gtkApplicationId,
    processId,
    windowType,
    normalType,
    state,
    skipTaskbar,
    transientFor,
    workspaceOfWindow,
    nameCount,
};
constexpr std::array<std::string_view, nameCount> names{
    "_NET_CLIENT_LIST_STACKING",
    "_NET_CLIENT_LIST",
    "_NET_ACTIVE_WINDOW",
    "_NET_CURRENT_DESKTOP",
    "WM_CLASS",
    "_GTK_APPLICATION_ID",
    "_NET_WM_PID",
    "_NET_WM_WINDOW_TYPE",
    "_NET_WM_WINDOW_TYPE_NORMAL",
    "_NET_WM_STATE",
    "_NET_WM_STATE_SKIP_TASKBAR",
    "WM_TRANSIENT_FOR",
    "_NET_WM_DESKTOP",
};

/// In units of four bytes; longer values are cut off.
constexpr uint32_t longestValue = 4096;

/// The workspace of windows that are on all of them.
constexpr uint32_t onAll = 0xFFFFFFFF;

/// The source indication of taskbars and pagers in EWMH messages: the user chose this window.
constexpr uint32_t fromPager = 2;

using Reply = std::unique_ptr<xcb_get_property_reply_t, XcbFree>;

/// The 32-bit values of a property: atoms, windows or numbers.
std::vector<uint32_t> numbersIn(const Reply &reply)
{
    if (!reply || reply->format != 32)
        return {};
    const auto *const first = static_cast<const uint32_t *>(xcb_get_property_value(reply.get()));
    return {first, first + reply->value_len};
}

uint32_t numberIn(const Reply &reply, uint32_t otherwise = 0)
{
    const auto numbers = numbersIn(reply);
    return numbers.empty() ? otherwise : numbers.front();
}

QByteArray bytesIn(const Reply &reply)
{
    if (!reply || reply->format != 8)
        return {};
    return {static_cast<const char *>(xcb_get_property_value(reply.get())),
            qsizetype(reply->value_len)};
}

bool contains(const std::vector<uint32_t> &numbers, uint32_t number)
{
    return std::ranges::find(numbers, number) != numbers.end();
}
} // namespace

struct X11OpenWindows::Window {
    xcb_window_t id;
    /// Whether a taskbar would show it.
    bool isOnTaskbar;
    uint32_t workspace;
};

/// The connection, and what has been asked.
struct X11OpenWindows::Session {
    using Cookie = std::optional<xcb_get_property_cookie_t>;

    struct ListRequest {
        Cookie stacked;
        Cookie all;
        Cookie active;
        Cookie workspace;
    };
    struct Request {
        xcb_window_t window;
        Cookie classes;
        Cookie applicationId;
        Cookie process;
    };

    Session();

    Cookie ask(xcb_window_t window, Name property) const
    {
        return xcb_get_property(connection.get(), false, window, atoms[property],
                                XCB_GET_PROPERTY_TYPE_ANY, 0, longestValue);
    }

    /// Null if the window has gone, or if nothing was asked.
    Reply answerTo(const Cookie &request) const
    {
        return request ? owned(xcb_get_property_reply(connection.get(), *request, nullptr))
                       : nullptr;
    }

    /// Asks for the list and, at the same time, about the windows of the last list: mostly they are
    /// still the same.
    void askAll(const WindowQuestions &asked);
    Request askAbout(xcb_window_t window) const;
    /// Forgets what has been asked.
    void discard();
    void readList();
    /// What the windows of the list have been asked, from the front to the back.
    std::vector<Request> takeRequests();
    OpenWindow answersTo(const Request &request) const;
    Window readWindow(xcb_window_t window) const;

    X11Connection connection;
    std::array<xcb_atom_t, nameCount> atoms;
    WindowQuestions questions;
    /// What has been asked and not been read.
    std::optional<ListRequest> listRequest;
    std::vector<Request> requests;
    /// The last list, from the front to the back.
    std::vector<xcb_window_t> windows;
    xcb_window_t active = XCB_NONE;
    uint32_t workspace = 0;
};

X11OpenWindows::Session::Session()
{
    // All names in one round trip.
    std::array<xcb_intern_atom_cookie_t, nameCount> cookies;
    std::ranges::transform(names, cookies.begin(), [this](std::string_view name) {
        return xcb_intern_atom(connection.get(), false, uint16_t(name.size()), name.data());
    });
    std::ranges::transform(cookies, atoms.begin(), [this](const auto &cookie) {
        const auto reply = owned(xcb_intern_atom_reply(connection.get(), cookie, nullptr));
        return reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
    });
}

void X11OpenWindows::Session::askAll(const WindowQuestions &asked)
{
    questions = asked;
    const xcb_window_t root = connection.root();
    listRequest = {
        .stacked = ask(root, stackedWindows),
        .all = ask(root, allWindows),
        .active = ask(root, activeWindow),
        .workspace = ask(root, currentWorkspace),
    };
    for (const xcb_window_t window : windows)
        requests.push_back(askAbout(window));
    xcb_flush(connection.get());
}

X11OpenWindows::Session::Request X11OpenWindows::Session::askAbout(xcb_window_t window) const
{
    const auto askIf = [this, window](bool isWanted, Name property) {
        return isWanted ? Cookie(ask(window, property)) : std::nullopt;
    };
    return {
        .window = window,
        .classes = askIf(questions.classes, windowClass),
        .applicationId = askIf(questions.applicationId, gtkApplicationId),
        .process = askIf(questions.process, processId),
    };
}

void X11OpenWindows::Session::discard()
{
    const auto discardAll = [this](std::initializer_list<Cookie> cookies) {
        for (const Cookie &cookie : cookies) {
            if (cookie)
                xcb_discard_reply(connection.get(), cookie->sequence);
        }
    };
    if (const auto list = std::exchange(listRequest, std::nullopt))
        discardAll({list->stacked, list->all, list->active, list->workspace});
    for (const Request &request : std::exchange(requests, {}))
        discardAll({request.classes, request.applicationId, request.process});
}

void X11OpenWindows::Session::readList()
{
    const ListRequest list = *std::exchange(listRequest, std::nullopt);
    windows = numbersIn(answerTo(list.stacked));
    // Xfwm does not list the first window as stacked until another one follows.
    for (const xcb_window_t window : numbersIn(answerTo(list.all))) {
        if (!contains(windows, window))
            windows.push_back(window);
    }
    std::ranges::reverse(windows);
    active = numberIn(answerTo(list.active));
    workspace = numberIn(answerTo(list.workspace));
}

std::vector<X11OpenWindows::Session::Request> X11OpenWindows::Session::takeRequests()
{
    readList();
    std::vector<Request> taken;
    for (const xcb_window_t window : windows) {
        const auto asked = std::ranges::find(requests, window, &Request::window);
        if (asked == requests.end()) {
            taken.push_back(askAbout(window));
        } else {
            taken.push_back(*asked);
            requests.erase(asked);
        }
    }
    return taken;
}

OpenWindow X11OpenWindows::Session::answersTo(const Request &request) const
{
    const QList<QByteArray> classes = bytesIn(answerTo(request.classes)).split('\0');
    return {
        .instance = QString::fromLatin1(classes.value(0)),
        .className = QString::fromLatin1(classes.value(1)),
        .applicationId = QString::fromUtf8(bytesIn(answerTo(request.applicationId))),
        .process = pid_t(numberIn(answerTo(request.process))),
    };
}

X11OpenWindows::Window X11OpenWindows::Session::readWindow(xcb_window_t window) const
{
    const auto typeRequest = ask(window, windowType);
    const auto stateRequest = ask(window, state);
    const auto ownerRequest = ask(window, transientFor);
    const auto workspaceRequest = ask(window, workspaceOfWindow);
    const auto types = numbersIn(answerTo(typeRequest));
    const auto states = numbersIn(answerTo(stateRequest));
    const bool hasOwner = numberIn(answerTo(ownerRequest)) != XCB_NONE;
    // Without a type, a window is normal unless it belongs to another one.
    const bool isNormal = types.empty() ? !hasOwner : contains(types, atoms[normalType]);
    return {
        .id = window,
        .isOnTaskbar = isNormal && !contains(states, atoms[skipTaskbar]),
        .workspace = numberIn(answerTo(workspaceRequest), onAll),
    };
}

X11OpenWindows::X11OpenWindows(const UserActivation &activation)
    : m_activation(activation)
{
}

X11OpenWindows::~X11OpenWindows() = default;

void X11OpenWindows::request(const WindowQuestions &questions)
{
    // The server may have had no room for another connection.
    if (!m_session || !m_session->connection.isOpen())
        m_session = std::make_unique<Session>();
    // The last press may not have run its entry, and windows that have been closed were asked too.
    m_session->discard();
    m_session->askAll(questions);
}

bool X11OpenWindows::bringToFront(const WindowQuestions &questions,
                                  const std::function<bool(const OpenWindow &)> &isWanted)
{
    if (!m_session || !m_session->listRequest || m_session->questions != questions)
        request(questions);
    std::vector<Window> wanted;
    for (const Session::Request &request : m_session->takeRequests()) {
        if (!isWanted(m_session->answersTo(request)))
            continue;
        const Window window = m_session->readWindow(request.window);
        if (window.isOnTaskbar)
            wanted.push_back(window);
    }
    if (wanted.empty())
        return false;
    const auto isWantedId = [&wanted](xcb_window_t id) {
        return std::ranges::find(wanted, id, &Window::id) != wanted.end();
    };
    // A dialog in front stands for the window that it belongs to.
    xcb_window_t front = m_session->active;
    while (front != XCB_NONE && !isWantedId(front))
        front = numberIn(m_session->answerTo(m_session->ask(front, transientFor)));
    const Window &next = front == XCB_NONE ? wanted.front() : wanted.back();
    if (next.id != front)
        activate(next);
    return true;
}

void X11OpenWindows::activate(const Window &window)
{
    auto *const connection = m_session->connection.get();
    const xcb_window_t root = m_session->connection.root();
    const uint32_t time = m_activation.x11Time.value_or(XCB_CURRENT_TIME);
    // Openbox refuses to activate windows of other workspaces.
    if (window.workspace != onAll && window.workspace != m_session->workspace)
        sendToWindowManager(connection, root, root, m_session->atoms[currentWorkspace],
                            {window.workspace, time});
    sendToWindowManager(connection, root, window.id, m_session->atoms[activeWindow],
                        {fromPager, time});
}
