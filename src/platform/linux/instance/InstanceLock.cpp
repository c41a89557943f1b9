#include "platform/linux/instance/InstanceLock.h"

#include "foundation/Files.h"
#include "platform/linux/base/ProcessSignals.h"

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
constexpr off_t lockedWithText = 2;
/// The names of a session are shorter: socket paths are limited to 108 bytes.
constexpr qsizetype maxTextLength = 4096;

/// Locks the open file description (F_OFD_…). A process lock would be lost as soon as any code in
/// the process opens and closes the file, such as a file panel that checks its type.
struct flock writeLock(off_t bytes)
{
    struct flock lock = {};
    lock.l_type = F_WRLCK;
    lock.l_whence = SEEK_SET;
    lock.l_len = bytes;
    return lock;
}

/// Opens the file; -1 on failure. A pipe or device in its place is left alone.
int openedFile(const QString &path)
{
    if (makePrivateFolder(QFileInfo(path).path()))
        return -1;
    const int file =
        open(QFile::encodeName(path).constData(),
             O_RDWR | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, S_IRUSR | S_IWUSR);
    struct stat status = {};
    if (file < 0)
        return file;
    if (fstat(file, &status) == 0 && S_ISREG(status.st_mode)) {
        // The umask may have removed some of the user's own permissions.
        fchmod(file, S_IRUSR | S_IWUSR);
        return file;
    }
    close(file);
    return -1;
}
} // namespace

InstanceLock::InstanceLock(const QString &path)
    : m_file(openedFile(path))
{
}

InstanceLock::State InstanceLock::take(const QByteArrayList &displays)
{
    if (lock(lockedFirst)) {
        write(displays);
        m_lockedBytes = lockedWithText;
        lock(m_lockedBytes);
        return State::ours;
    }
    if (errno != EAGAIN && errno != EACCES)
        return State::impossible;
    const auto other = holder();
    return !other || other->mayServe(displays) ? State::heldHere : State::heldElsewhere;
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
        // Changes of a lock cannot be watched, so poll (in ms).
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
    return fcntl(m_file, F_OFD_SETLK, &range) == 0;
}

std::optional<InstanceLock::Holder> InstanceLock::holder() const
{
    constexpr off_t whole = 0;
    struct flock range = writeLock(whole);
    if (fcntl(m_file, F_OFD_GETLK, &range) != 0 || range.l_type == F_UNLCK)
        return std::nullopt;
    Holder found{.lockedBytes = range.l_len};
    if (found.lockedBytes < lockedWithText)
        return found;
    QByteArray text(maxTextLength, '\0');
    text.truncate(std::max<ssize_t>(0, pread(m_file, text.data(), size_t(maxTextLength), 0)));
    QByteArrayList lines = text.split('\n');
    found.process = lines.takeFirst().toInt();
    found.displays = lines;
    return found;
}

void InstanceLock::write(const QByteArrayList &displays) const
{
    const QByteArrayList lines = QByteArrayList{QByteArray::number(getpid())} + displays;
    const QByteArray text = lines.join('\n');
    // Overwrite the old text, whose space is allocated even on a full disk.
    const ssize_t length = pwrite(m_file, text.constData(), size_t(text.size()), 0);
    [[maybe_unused]] const int status = ftruncate(m_file, length == text.size() ? length : 0);
}

bool InstanceLock::Holder::mayServe(const QByteArrayList &others) const
{
    return displays.isEmpty() || others.isEmpty()
        || std::ranges::any_of(others,
                               [this](const auto &other) { return displays.contains(other); });
}
