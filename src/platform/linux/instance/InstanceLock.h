// The one place for the program that may write the list: a locked file beside it.
#pragma once

#include <QByteArrayList>
#include <QDeadlineTimer>
#include <QString>
#include <optional>
#include <sys/types.h>

/// The kernel releases the lock when the program ends, however it ends. The first line of the file
/// is the holder's process id; the names of its session's displays follow, a line each. The number
/// of locked bytes tells the rest: one until the holder has written that text, then two, and one
/// more for each request that it has answered.
class InstanceLock
{
public:
    enum class State {
        ours,
        /// Another instance has it, in the same session as far as can be told.
        heldHere,
        heldElsewhere,
        /// The file cannot be made or locked.
        impossible,
    };

    /// Opens the file, or makes it. There is one lock in a program, until it ends.
    explicit InstanceLock(const QString &path);

    /// Takes the lock for a session with these displays, if nobody has it.
    State take(const QByteArrayList &displays);

    /// Asks the holder by a signal to open its window. False if there is no holder (any more), or
    /// no answer until the deadline.
    bool ask(const QDeadlineTimer &deadline) const;

    /// Tells whoever waits that what it asked for is being done. To be called by the holder.
    void answer();

private:
    struct Holder {
        /// Sessions are the same if they share a display, or if one is unknown.
        bool mayServe(const QByteArrayList &others) const;

        off_t lockedBytes = 0;
        /// 0 if it is unknown. In another PID namespace the number means a different process, which
        /// ignores the signal.
        pid_t process = 0;
        QByteArrayList displays;
    };

    bool lock(off_t bytes) const;
    std::optional<Holder> holder() const;
    void write(const QByteArrayList &displays) const;

    /// Never closed.
    int m_file;
    off_t m_lockedBytes = 0;
};
