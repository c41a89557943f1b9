// The one place for the program that may write the list: a locked file beside it.
#pragma once

#include <QByteArray>
#include <QDeadlineTimer>
#include <QString>
#include <optional>
#include <sys/types.h>

/// The kernel lets go of the lock when the program ends, however it ends. The file holds the name
/// of the display that the holder serves. How many bytes are locked tells the rest: one while the
/// holder is still to write that name, two then, and one more for each request that it has
/// answered.
class InstanceLock
{
public:
    enum class State {
        ours,
        /// Another instance has it, for the same display as far as can be told.
        heldHere,
        heldElsewhere,
        /// The file cannot be made or locked.
        impossible,
    };

    /// Opens the file, or makes it. There is one lock in a program, until it ends.
    explicit InstanceLock(const QString &path);

    /// Takes the lock for a display, if nobody has it. The name may be empty.
    State take(const QByteArray &display);

    /// Asks the holder by a signal to open its window. False if there is no holder (any more), or
    /// no answer until the deadline.
    bool ask(const QDeadlineTimer &deadline) const;

    /// Tells whoever waits that what it asked for is being done. To be called by the holder.
    void answer();

private:
    struct Holder {
        /// 0 or less if it is not among the processes that we see.
        pid_t process;
        off_t lockedBytes;
    };

    bool lock(off_t bytes) const;
    std::optional<Holder> holder() const;
    void write(const QByteArray &display) const;
    bool isHeldFor(const QByteArray &display) const;

    // Never closed, because closing any descriptor of the file would give up the lock.
    int m_file;
    off_t m_lockedBytes = 0;
};
