#include "platform/linux/Session.h"

#include <QFile>
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
