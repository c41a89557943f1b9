// Adds one line of JSON about how it was started to the file that its first argument names. With
// --grab-keyboard it first tries to take the keyboard for itself, once or with --insist until it
// has it, and gives it back when it ends: at once, or with --until-gone FILE when that file is not
// there any more.

#include <algorithm>
#include <chrono>
#include <climits>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <thread>
#include <unistd.h>
#include <vector>
#include <xcb/xcb.h>

namespace
{
std::vector<int> openDescriptors()
{
    std::vector<int> open;
    for (int descriptor = 0; descriptor < 1024; ++descriptor) {
        if (fcntl(descriptor, F_GETFD) != -1)
            open.push_back(descriptor);
    }
    return open;
}

bool hasDefaultSignals()
{
    sigset_t blocked;
    sigprocmask(SIG_SETMASK, nullptr, &blocked);
    for (int signal = 1; signal < NSIG; ++signal) {
        struct sigaction action = {};
        if (sigaction(signal, nullptr, &action) == 0
            && (action.sa_handler != SIG_DFL || sigismember(&blocked, signal) == 1))
            return false;
    }
    return true;
}

std::string variable(const char *name)
{
    const char *const value = std::getenv(name);
    return value ? value : std::string();
}

std::string target(const char *link)
{
    char path[PATH_MAX];
    const ssize_t length = readlink(link, path, sizeof path);
    return length < 0 ? std::string() : std::string(path, static_cast<size_t>(length));
}

/// Takes the keyboard for itself.
class KeyboardGrab
{
public:
    KeyboardGrab()
        : m_connection(xcb_connect(nullptr, nullptr))
    {
    }
    ~KeyboardGrab()
    {
        // Answered, so that the grab has gone for certain when this program has.
        xcb_ungrab_keyboard(m_connection, XCB_CURRENT_TIME);
        std::free(
            xcb_get_input_focus_reply(m_connection, xcb_get_input_focus(m_connection), nullptr));
        xcb_disconnect(m_connection);
    }
    KeyboardGrab(const KeyboardGrab &) = delete;
    KeyboardGrab &operator=(const KeyboardGrab &) = delete;

    /// Returns what the X server answered.
    int attempt()
    {
        const auto root = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data->root;
        auto *const reply =
            xcb_grab_keyboard_reply(m_connection,
                                    xcb_grab_keyboard(m_connection, 0, root, XCB_CURRENT_TIME,
                                                      XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC),
                                    nullptr);
        const int status = reply->status;
        std::free(reply);
        return status;
    }

private:
    xcb_connection_t *m_connection;
};

bool contains(const std::vector<std::string> &arguments, const char *option)
{
    return std::ranges::find(arguments, option) != arguments.end();
}

/// The argument behind the option; empty if there is none.
std::string valueOf(const char *option, const std::vector<std::string> &arguments)
{
    const auto found = std::ranges::find(arguments, option);
    return found == arguments.end() || std::next(found) == arguments.end() ? std::string()
                                                                           : *std::next(found);
}

bool record(const nlohmann::json &start, const char *path)
{
    const std::string line = start.dump() + '\n';
    const int file = open(path, O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0600);
    return write(file, line.data(), line.size()) == static_cast<ssize_t>(line.size());
}
} // namespace

int main(int argc, char *argv[])
{
    if (argc < 2)
        return EXIT_FAILURE;
    const std::vector<std::string> arguments(argv + 2, argv + argc);
    // Before any connection is open.
    const auto descriptors = openDescriptors();
    std::optional<KeyboardGrab> grab;
    nlohmann::json status;
    if (contains(arguments, "--grab-keyboard")) {
        grab.emplace();
        do
            status = grab->attempt();
        while (status == XCB_GRAB_STATUS_ALREADY_GRABBED && contains(arguments, "--insist"));
    }
    const bool isRecorded = record(
        {
            {"arguments", arguments},
            {"keyboardGrab", status},
            {"folder", target("/proc/self/cwd")},
            {"input", target("/proc/self/fd/0")},
            {"process", getpid()},
            {"startupId", variable("DESKTOP_STARTUP_ID")},
            {"activationToken", variable("XDG_ACTIVATION_TOKEN")},
            {"busAddress", variable("DBUS_SESSION_BUS_ADDRESS")},
            {"descriptors", descriptors},
            {"leadsItsSession", getsid(0) == getpid()},
            {"hasDefaultSignals", hasDefaultSignals()},
        },
        argv[1]);
    const std::string awaited = valueOf("--until-gone", arguments);
    while (access(awaited.c_str(), F_OK) == 0)
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    return isRecorded ? EXIT_SUCCESS : EXIT_FAILURE;
}
