#include "platform/linux/base/ProcessSignals.h"

#include <QCoreApplication>
#include <cerrno>
#include <cstdint>
#include <sys/eventfd.h>
#include <unistd.h>

namespace
{
// The event descriptor sums what is written: activations count in its lower half, terminations in
// its upper half.
constexpr std::uint64_t activation = 1;
constexpr std::uint64_t termination = std::uint64_t(1) << 32;

int wakeDescriptor = -1;

/// Handles the signals instead of blocking them, because started programs would inherit the blocked
/// mask.
void wake(int signal, siginfo_t *info, void *)
{
    // GDBus raises the signal itself when the session bus goes away. The session may live on
    // without it.
    if (info->si_code == SI_TKILL && info->si_pid == getpid())
        return;
    const int interruptedError = errno;
    const std::uint64_t value = signal == activationSignal ? activation : termination;
    [[maybe_unused]] const auto written = write(wakeDescriptor, &value, sizeof value);
    errno = interruptedError;
}
} // namespace

ProcessSignals::ProcessSignals()
{
    wakeDescriptor = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    struct sigaction action = {};
    action.sa_sigaction = wake;
    action.sa_flags = SA_RESTART | SA_SIGINFO;
    for (const int signal : {SIGTERM, SIGINT, activationSignal})
        sigaction(signal, &action, nullptr);
}

void ProcessSignals::attachToEventLoop(std::function<void()> activate)
{
    m_notifier.emplace(wakeDescriptor, QSocketNotifier::Read);
    QObject::connect(&*m_notifier, &QSocketNotifier::activated, [activate = std::move(activate)] {
        std::uint64_t value = 0;
        [[maybe_unused]] const auto length = read(wakeDescriptor, &value, sizeof value);
        if (value >= termination)
            QCoreApplication::quit();
        else if (value > 0)
            activate();
    });
}
