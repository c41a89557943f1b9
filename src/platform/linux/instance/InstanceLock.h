// Makes sure that only one instance writes the list, by a locked file beside it.
#pragma once

#include <QByteArrayList>
#include <QDeadlineTimer>
#include <QString>
#include <optional>
#include <sys/types.h>

/// The kernel releases the lock when the program exits, however it does. The first line of the file
/// is the holder's process id; the names of its session's displays follow, one per line. The number
/// of locked bytes tells the rest: one until the holder has written that text, then two, and one
/// more for each request that it has answered.
class InstanceLock
{
public:
    enum class State {
        ours,
        /// Another instance holds it, in the same session as far as can be told.
        heldHere,
        heldElsewhere,
        /// The file cannot be created or locked.
        impossible,
    };

    /// Opens or creates the file. Only one lock may exist, and it lasts until the program exits.
    explicit InstanceLock(const QString &path);

    /// Takes the lock, unless it is held, for a session with these displays.
    State take(const QByteArrayList &displays);

    /// Asks the holder by a signal to open its window. False if there is no holder (any more), or
    /// if it does not answer before the deadline.
    bool ask(const QDeadlineTimer &deadline) const;

    /// Tells waiting instances that their request is being handled. To be called by the holder.
    void answer();

private:
    struct Holder {
        /// Whether the holder may be in the session with these displays. Sessions are the same if
        /// they share a display; unknown displays match any.
        bool mayServe(const QByteArrayList &others) const;

        off_t lockedBytes = 0;
        /// 0 if unknown. In another PID namespace the number means a different process, which
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
