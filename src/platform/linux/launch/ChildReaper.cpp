#include "platform/linux/launch/ChildReaper.h"

#include <QSocketNotifier>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

void ChildReaper::reapWhenEnded(pid_t child)
{
    const int descriptor = static_cast<int>(syscall(SYS_pidfd_open, child, 0));
    if (descriptor < 0) {
        qWarning("corvane: cannot watch the started process %d", child);
        return;
    }
    auto *const ended = new QSocketNotifier(descriptor, QSocketNotifier::Read, this);
    connect(ended, &QSocketNotifier::activated, this, [descriptor, ended] {
        siginfo_t status;
        waitid(static_cast<idtype_t>(P_PIDFD), static_cast<id_t>(descriptor), &status, WEXITED);
        ended->setEnabled(false);
        close(descriptor);
        ended->deleteLater();
    });
}
