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

/// Any ended child, ours or a library's; nothing if there is none. It remains a zombie.
std::optional<pid_t> anyEndedChild()
{
    siginfo_t status = {};
    const bool isFound =
        waitid(P_ALL, 0, &status, WEXITED | WNOHANG | WNOWAIT) == 0 && status.si_pid != 0;
    return isFound ? std::optional(status.si_pid) : std::nullopt;
}

/// Reaps the child if it has ended; false while it runs.
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
    // Reap now: one turn of the event loop may handle many presses, and zombies count as processes.
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
    // Signals of the same kind merge, so ask the kernel which child has ended. With thousands of
    // children alive, that is cheaper than asking about each.
    while (const auto child = anyEndedChild()) {
        if (m_children.erase(*child) == 0) {
            // A library's child is for the library to reap. Until then it hides ours, so ask about
            // each of ours.
            std::erase_if(m_children, tryToReap);
            return;
        }
        tryToReap(*child);
    }
}
