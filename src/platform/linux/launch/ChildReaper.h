// Takes the exit status of started programs, so that none stays behind as a zombie.
#pragma once

#include <QSocketNotifier>
#include <optional>
#include <set>
#include <sys/types.h>

/// Takes the status of its own children only, and holds no descriptor for any of them. There is one
/// in a program.
class ChildReaper
{
public:
    /// From here on the ends of children are noted. Needs no QCoreApplication yet.
    ChildReaper();
    Q_DISABLE_COPY_MOVE(ChildReaper)

    /// The child may have ended already. Needs the QCoreApplication.
    void reapWhenEnded(pid_t child);

private:
    void reap();

    std::set<pid_t> m_children;
    std::optional<QSocketNotifier> m_notifier;
};
