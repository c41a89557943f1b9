#include "platform/linux/scripts/TrustedPath.h"

#include "foundation/Files.h"
#include "foundation/Text.h"

#include <QByteArrayList>
#include <QFile>
#include <cerrno>
#include <climits>
#include <grp.h>
#include <pwd.h>
#include <string_view>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace
{
/// The kernel's own limit.
constexpr int maxLinks = 40;

Error error(const QString &text, const QByteArray &path)
{
    return Error{text.arg(quoted(shortened(onOneLine(QFile::decodeName(path)))))};
}

bool hasOtherMembers(const group &group, const char *user)
{
    for (char **member = group.gr_mem; *member; ++member) {
        if (std::string_view(*member) != user)
            return true;
    }
    return false;
}

/// Whether the group is named after the user and has no other members. Whether it is the primary
/// group of others is not checked: an administrator who assigns several users a group of one user's
/// name means them to share.
bool isOwnPrivateGroup(gid_t id)
{
    const passwd *const user = getpwuid(geteuid());
    const group *const group = getgrgid(id);
    return user && group && user->pw_gid == id && std::string_view(group->gr_name) == user->pw_name
        && !hasOtherMembers(*group, user->pw_name);
}

/// Whether the file has an access control list, which may grant more users access behind the
/// group's permissions.
bool hasAccessList(const QByteArray &path)
{
    return getxattr(path.constData(), "system.posix_acl_access", nullptr, 0) > 0;
}

bool canBeChangedByOthers(const QByteArray &path, const struct stat &status)
{
    if (S_ISDIR(status.st_mode) && (status.st_mode & S_ISVTX))
        return false;
    if (status.st_mode & S_IWOTH)
        return true;
    return (status.st_mode & S_IWGRP) && (hasAccessList(path) || !isOwnPrivateGroup(status.st_gid));
}

std::optional<Error> reasonForDistrustOf(const QByteArray &path, const struct stat &status)
{
    if (status.st_uid != geteuid() && status.st_uid != 0)
        return error(u"%1 belongs to another user, so the Shortcut is not run."_s, path);
    // The text of a link can never be changed, and its permissions mean nothing.
    if (!S_ISLNK(status.st_mode) && canBeChangedByOthers(path, status))
        return error(u"Other users may change %1, so the Shortcut is not run."_s, path);
    return std::nullopt;
}

QByteArray targetOfLink(const QByteArray &path)
{
    char target[PATH_MAX];
    const ssize_t length = readlink(path.constData(), target, sizeof target);
    return {target, length > 0 ? qsizetype(length) : 0};
}

/// The resolved prefix and the components still to resolve.
struct Walk {
    /// Empty for the root folder.
    QByteArray place;
    QByteArrayList ahead;

    QByteArray next() const { return place + '/' + ahead.constFirst(); }

    void enter(const QByteArray &path)
    {
        place = path;
        ahead.removeFirst();
    }
    void goUp()
    {
        const auto slash = place.lastIndexOf('/');
        enter(slash > 0 ? place.first(slash) : QByteArray());
    }
    void follow(const QByteArray &target)
    {
        ahead = target.split('/') + ahead.sliced(1);
        if (target.startsWith('/'))
            place.clear();
    }
};
} // namespace

std::optional<Error> reasonForDistrust(const QString &path)
{
    Walk walk{.ahead = QFile::encodeName(path).split('/')};
    int links = 0;
    struct stat status;
    if (lstat("/", &status) == 0) {
        if (auto reason = reasonForDistrustOf("/", status))
            return reason;
    }
    while (!walk.ahead.isEmpty()) {
        const QByteArray name = walk.ahead.constFirst();
        if (name.isEmpty() || name == ".") {
            walk.ahead.removeFirst();
            continue;
        }
        if (name == "..") {
            walk.goUp();
            continue;
        }
        const QByteArray next = walk.next();
        if (lstat(next.constData(), &status) != 0)
            return systemError();
        if (auto reason = reasonForDistrustOf(next, status))
            return reason;
        if (!S_ISLNK(status.st_mode))
            walk.enter(next);
        else if (++links <= maxLinks)
            walk.follow(targetOfLink(next));
        else
            return systemError(ELOOP);
    }
    return std::nullopt;
}
