#include "platform/linux/launch/ChildReaper.h"

#include <cerrno>
#include <csignal>
#include <sys/eventfd.h>
#include <sys/wait.h>

namespace
{
int wakeDescriptor = -1;

void wake(int)
{
    const int error = errno;
    eventfd_write(wakeDescriptor, 1);
    errno = error;
}

/// A child that has ended, whosever it is; nothing if there is none. It stays a zombie.
std::optional<pid_t> anyEndedChild()
{
    siginfo_t status = {};
    const bool isFound =
        waitid(P_ALL, 0, &status, WEXITED | WNOHANG | WNOWAIT) == 0 && status.si_pid != 0;
    return isFound ? std::optional(status.si_pid) : std::nullopt;
}

/// Takes the child's status if it has ended; false while it runs.
bool tryToReap(pid_t child)
{
    siginfo_t status = {};
    const bool isGone = waitid(P_PID, static_cast<id_t>(child), &status, WEXITED | WNOHANG) != 0;
    return isGone || status.si_pid == child;
}
} // namespace

ChildReaper::ChildReaper()
{
    if (wakeDescriptor < 0)
        wakeDescriptor = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    struct sigaction action = {};
    action.sa_handler = wake;
    action.sa_flags = SA_RESTART | SA_NOCLDSTOP;
    sigaction(SIGCHLD, &action, nullptr);
}

void ChildReaper::reapWhenEnded(pid_t child)
{
    m_children.insert(child);
    // One turn of the event loop may handle many presses, and zombies count as processes.
    reap();
    if (m_notifier)
        return;
    m_notifier.emplace(wakeDescriptor, QSocketNotifier::Read);
    QObject::connect(&*m_notifier, &QSocketNotifier::activated, &*m_notifier, [this] { reap(); });
}

void ChildReaper::reap()
{
    eventfd_t wakes = 0;
    if (eventfd_read(wakeDescriptor, &wakes) != 0)
        return;
    // Signals of the same kind merge into one, so the kernel is asked who has ended. That costs
    // less than asking about each child when thousands are alive.
    while (const auto child = anyEndedChild()) {
        if (m_children.erase(*child) == 0) {
            // A child of a library is its own to reap, and hides ours behind it until then.
            std::erase_if(m_children, tryToReap);
            return;
        }
        tryToReap(*child);
    }
}
