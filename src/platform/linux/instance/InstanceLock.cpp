#include "platform/linux/instance/InstanceLock.h"

#include "platform/linux/ApplicationId.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <algorithm>
#include <cerrno>
#include <climits>
#include <fcntl.h>
#include <poll.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace
{
/// A file of our own, and not what somebody else put in its place, such as a further link to one.
bool isOurFile(int file)
{
    struct stat status = {};
    return fstat(file, &status) == 0 && S_ISREG(status.st_mode) && status.st_uid == geteuid()
        && status.st_nlink == 1;
}

qsizetype size(int file)
{
    struct stat status = {};
    fstat(file, &status);
    return qsizetype(status.st_size);
}

void awaitInput(int descriptor, const QDeadlineTimer &deadline)
{
    pollfd awaited{.fd = descriptor, .events = POLLIN};
    poll(&awaited, 1, int(deadline.remainingTime()));
}

void drain(int changes)
{
    char events[sizeof(inotify_event) + NAME_MAX + 1];
    while (read(changes, events, sizeof events) > 0) { }
}
} // namespace

InstanceClaim InstanceLock::claim(const QStringList &paths, const StartupTokens &tokens)
{
    if (std::ranges::none_of(paths, [this](const QString &path) { return open(path); }))
        return InstanceClaim::impossible;
    if (tryLock())
        return takePlace();
    if (errno != EAGAIN && errno != EACCES)
        return InstanceClaim::impossible;
    if (!request(tokens))
        return InstanceClaim::unanswered;
    const QDeadlineTimer deadline(instancePatience);
    do {
        // The other's end is a change too: the file is closed then.
        awaitInput(m_changes, deadline);
        drain(m_changes);
        if (tryLock())
            return takePlace();
        if (size(m_file) == 0)
            return InstanceClaim::handedOver;
    } while (!deadline.hasExpired());
    return InstanceClaim::unanswered;
}

InstanceClaim InstanceLock::takePlace() const
{
    // What was asked of an instance that has died is not asked of us.
    return ftruncate(m_file, 0) == 0 ? InstanceClaim::first : InstanceClaim::impossible;
}

void InstanceLock::attachToEventLoop(std::function<void(const StartupTokens &)> handler)
{
    m_handler = std::move(handler);
    m_notifier.emplace(m_changes, QSocketNotifier::Read);
    QObject::connect(&*m_notifier, &QSocketNotifier::activated, [this] { handleChange(); });
}

bool InstanceLock::open(const QString &path)
{
    const QByteArray name = QFile::encodeName(path);
    // With the sticky bit, by which services that clean the folder leave a file alone.
    constexpr mode_t onlyOurs = S_ISVTX | S_IRUSR | S_IWUSR;
    const int file =
        ::open(name.constData(), O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK, onlyOurs);
    if (file < 0)
        return false;
    const int changes = inotify_init1(IN_CLOEXEC | IN_NONBLOCK);
    if (!isOurFile(file)
        || inotify_add_watch(changes, name.constData(), IN_MODIFY | IN_CLOSE_WRITE) < 0) {
        close(file);
        close(changes);
        return false;
    }
    m_file = file;
    m_changes = changes;
    return true;
}

bool InstanceLock::tryLock() const
{
    // A lock of the process, which what it starts does not inherit.
    struct flock whole = {};
    whole.l_type = F_WRLCK;
    whole.l_whence = SEEK_SET;
    return fcntl(m_file, F_SETLK, &whole) == 0;
}

bool InstanceLock::request(const StartupTokens &tokens) const
{
    const QByteArray text = tokens.startupId + '\0' + tokens.activationToken + '\0';
    return pwrite(m_file, text.constData(), size_t(text.size()), 0) == text.size();
}

std::optional<StartupTokens> InstanceLock::takeRequest() const
{
    QByteArray text(size(m_file), '\0');
    const ssize_t length = pread(m_file, text.data(), size_t(text.size()), 0);
    if (length <= 0 || ftruncate(m_file, 0) != 0)
        return std::nullopt;
    // Behind the second zero byte there may be the rest of another, longer request.
    const QList<QByteArray> parts = text.split('\0');
    return StartupTokens{.startupId = parts.value(0), .activationToken = parts.value(1)};
}

void InstanceLock::handleChange() const
{
    drain(m_changes);
    if (const auto tokens = takeRequest())
        m_handler(*tokens);
}

QStringList instanceLockPaths()
{
    static const QRegularExpression unsafe(u"[^A-Za-z0-9_.-]"_s);
    const QString wayland = qEnvironmentVariable("WAYLAND_DISPLAY");
    QString display = wayland.isEmpty() ? qEnvironmentVariable("DISPLAY") : wayland;
    display.replace(unsafe, u"_"_s);
    QStringList paths;
    if (const QString folder = qEnvironmentVariable("XDG_RUNTIME_DIR"); !folder.isEmpty())
        paths << u"%1/%2-%3.lock"_s.arg(folder, applicationId, display);
    paths << u"%1/%2-%3-%4.lock"_s.arg(QDir::tempPath(), applicationId).arg(geteuid()).arg(display);
    return paths;
}
