#include "platform/linux/instance/InstanceLock.h"

#include "foundation/Files.h"
#include "platform/linux/ProcessSignals.h"

#include <QFile>
#include <QFileInfo>
#include <QThread>
#include <algorithm>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{
constexpr off_t lockedFirst = 1;
constexpr off_t lockedWithDisplay = 2;

/// Of a process, and not of an open file, so that what we start does not inherit it and others can
/// learn our process id.
struct flock writeLock(off_t bytes)
{
    struct flock lock = {};
    lock.l_type = F_WRLCK;
    lock.l_whence = SEEK_SET;
    lock.l_len = bytes;
    return lock;
}

/// The file, or -1. A pipe or device in its place is left alone.
int openedFile(const QString &path)
{
    if (makePrivateFolder(QFileInfo(path).path()))
        return -1;
    const int file =
        open(QFile::encodeName(path).constData(),
             O_RDWR | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, S_IRUSR | S_IWUSR);
    struct stat status = {};
    if (file < 0 || (fstat(file, &status) == 0 && S_ISREG(status.st_mode)))
        return file;
    close(file);
    return -1;
}
} // namespace

InstanceLock::InstanceLock(const QString &path)
    : m_file(openedFile(path))
{
}

InstanceLock::State InstanceLock::take(const QByteArray &display)
{
    if (lock(lockedFirst)) {
        write(display);
        m_lockedBytes = lockedWithDisplay;
        lock(m_lockedBytes);
        return State::ours;
    }
    if (errno != EAGAIN && errno != EACCES)
        return State::impossible;
    return isHeldFor(display) ? State::heldHere : State::heldElsewhere;
}

bool InstanceLock::ask(const QDeadlineTimer &deadline) const
{
    const auto asked = holder();
    if (asked && asked->process > 0)
        kill(asked->process, activationSignal);
    for (auto now = asked; now && now->process == asked->process; now = holder()) {
        if (now->lockedBytes > asked->lockedBytes)
            return true;
        if (deadline.hasExpired())
            return false;
        // Nobody tells of changes of a lock.
        constexpr int pause = 5;
        QThread::msleep(pause);
    }
    return false;
}

void InstanceLock::answer()
{
    lock(++m_lockedBytes);
}

bool InstanceLock::lock(off_t bytes) const
{
    struct flock range = writeLock(bytes);
    return fcntl(m_file, F_SETLK, &range) == 0;
}

std::optional<InstanceLock::Holder> InstanceLock::holder() const
{
    constexpr off_t whole = 0;
    struct flock range = writeLock(whole);
    if (fcntl(m_file, F_GETLK, &range) != 0 || range.l_type == F_UNLCK)
        return std::nullopt;
    return Holder{range.l_pid, range.l_len};
}

void InstanceLock::write(const QByteArray &display) const
{
    // On a full disk the file stays empty, which stands for any display.
    if (ftruncate(m_file, 0) == 0) [[maybe_unused]]
        const auto length = pwrite(m_file, display.constData(), size_t(display.size()), 0);
}

bool InstanceLock::isHeldFor(const QByteArray &display) const
{
    const auto other = holder();
    if (!other || other->lockedBytes < lockedWithDisplay)
        return true;
    constexpr qsizetype longest = 4096;
    QByteArray name(longest, '\0');
    name.truncate(std::max<ssize_t>(0, pread(m_file, name.data(), size_t(longest), 0)));
    return name.isEmpty() || display.isEmpty() || name == display;
}
