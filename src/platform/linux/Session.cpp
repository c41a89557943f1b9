#include "platform/linux/Session.h"

#include <QFile>
#include <QHash>
#include <cstring>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

SessionType sessionType(const QProcessEnvironment &environment)
{
    if (!environment.value(u"WAYLAND_DISPLAY"_s).isEmpty()
        || environment.value(u"XDG_SESSION_TYPE"_s) == u"wayland")
        return SessionType::wayland;
    return environment.value(u"DISPLAY"_s).isEmpty() ? SessionType::none : SessionType::x11;
}

std::optional<Desktop> currentDesktop(const QProcessEnvironment &environment)
{
    static const QHash<QString, Desktop> desktops{
        {u"gnome"_s, Desktop::gnome},       {u"ubuntu"_s, Desktop::gnome},
        {u"unity"_s, Desktop::gnome},       {u"pantheon"_s, Desktop::gnome},
        {u"budgie"_s, Desktop::budgie},     {u"kde"_s, Desktop::plasma},
        {u"xfce"_s, Desktop::xfce},         {u"x-cinnamon"_s, Desktop::cinnamon},
        {u"cinnamon"_s, Desktop::cinnamon}, {u"mate"_s, Desktop::mate},
        {u"lxqt"_s, Desktop::lxqt},
    };
    for (const QString &name : environment.value(u"XDG_CURRENT_DESKTOP"_s).split(u':')) {
        if (const auto found = desktops.constFind(name.toLower()); found != desktops.cend())
            return *found;
    }
    return std::nullopt;
}

QString waylandSocketPath(const QProcessEnvironment &environment)
{
    QString name = environment.value(u"WAYLAND_DISPLAY"_s);
    if (name.isEmpty())
        name = u"wayland-0"_s;
    return name.startsWith(u'/') ? name : environment.value(u"XDG_RUNTIME_DIR"_s) + u'/' + name;
}

bool acceptsConnections(const QString &socketPath)
{
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    const QByteArray path = QFile::encodeName(socketPath);
    if (size_t(path.size()) >= sizeof address.sun_path)
        return false;
    std::memcpy(address.sun_path, path.constData(), size_t(path.size()));
    const int socketDescriptor = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const bool accepted =
        connect(socketDescriptor, reinterpret_cast<sockaddr *>(&address), sizeof address) == 0;
    close(socketDescriptor);
    return accepted;
}
