#include "platform/linux/TerminationSignals.h"

#include <QCoreApplication>
#include <csignal>
#include <cstdint>
#include <sys/eventfd.h>
#include <unistd.h>

namespace
{
int wakeDescriptor = -1;

/// A handler rather than a blocked signal, so that started programs inherit nothing.
void wake(int)
{
    const std::uint64_t one = 1;
    [[maybe_unused]] const auto written = write(wakeDescriptor, &one, sizeof one);
}
} // namespace

TerminationSignals::TerminationSignals()
{
    wakeDescriptor = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    struct sigaction action = {};
    action.sa_handler = wake;
    action.sa_flags = SA_RESTART;
    sigaction(SIGTERM, &action, nullptr);
    sigaction(SIGINT, &action, nullptr);
}

void TerminationSignals::attachToEventLoop()
{
    m_notifier.emplace(wakeDescriptor, QSocketNotifier::Read);
    QObject::connect(&*m_notifier, &QSocketNotifier::activated, [] { QCoreApplication::quit(); });
}
