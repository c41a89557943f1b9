// Adds one line of JSON about how it was started to the file that its first argument names. With
// --grab-keyboard it first tries to take the keyboard for itself.

#include <algorithm>
#include <climits>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <nlohmann/json.hpp>
#include <string>
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

std::string target(const char *link)
{
    char path[PATH_MAX];
    const ssize_t length = readlink(link, path, sizeof path);
    return length < 0 ? std::string() : std::string(path, static_cast<size_t>(length));
}

/// What the X server answers: 0 is success.
int grabKeyboard()
{
    auto *const connection = xcb_connect(nullptr, nullptr);
    const auto root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
    auto *const reply =
        xcb_grab_keyboard_reply(connection,
                                xcb_grab_keyboard(connection, 0, root, XCB_CURRENT_TIME,
                                                  XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC),
                                nullptr);
    const int status = reply->status;
    std::free(reply);
    xcb_disconnect(connection);
    return status;
}
} // namespace

int main(int argc, char *argv[])
{
    if (argc < 2)
        return EXIT_FAILURE;
    const std::vector<std::string> arguments(argv + 2, argv + argc);
    const bool grabs = std::ranges::find(arguments, "--grab-keyboard") != arguments.end();
    const nlohmann::json start{
        {"arguments", arguments},
        {"keyboardGrab", grabs ? nlohmann::json(grabKeyboard()) : nlohmann::json()},
        {"folder", target("/proc/self/cwd")},
        {"input", target("/proc/self/fd/0")},
        {"descriptors", openDescriptors()},
        {"leadsItsSession", getsid(0) == getpid()},
        {"hasDefaultSignals", hasDefaultSignals()},
    };
    const std::string line = start.dump() + '\n';
    const int file = open(argv[1], O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0600);
    return write(file, line.data(), line.size()) == static_cast<ssize_t>(line.size())
        ? EXIT_SUCCESS
        : EXIT_FAILURE;
}
