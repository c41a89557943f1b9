// Reaps started programs, so that none stays behind as a zombie.
#pragma once

#include <QSocketNotifier>
#include <optional>
#include <set>
#include <sys/types.h>

/// Reaps only the children that it was told of, and needs no descriptor per child. Only one
/// instance may exist.
class ChildReaper
{
public:
    /// Exits of children are recorded from then on. Needs no QCoreApplication yet.
    ChildReaper();
    Q_DISABLE_COPY_MOVE(ChildReaper)

    /// Reaps the child when it ends, or at once if it has ended already. Needs the
    /// QCoreApplication.
    void reapWhenEnded(pid_t child);

private:
    void reap();

    std::set<pid_t> m_children;
    std::optional<QSocketNotifier> m_notifier;
};
