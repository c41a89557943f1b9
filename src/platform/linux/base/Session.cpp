#include "platform/linux/base/Session.h"

#include "platform/linux/base/LocalSocket.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QHash>
#include <QRegularExpression>
#include <chrono>

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

QByteArrayList displayNames(const QProcessEnvironment &environment)
{
    QByteArrayList names;
    if (sessionType(environment) == SessionType::wayland)
        names << waylandSocketPath(environment).toUtf8();
    // Ignores the screen number and treats unix:0 as :0. But localhost:10 is not :10: SSH forwards
    // displays of other machines under such names.
    static const QRegularExpression pattern(u"\\A(?:unix(?=:))?(.*:[0-9]+?)(?:\\.[0-9]+)?\\z"_s);
    const QString name = environment.value(u"DISPLAY"_s).replace(pattern, u"\\1"_s);
    if (!name.isEmpty())
        names << name.toUtf8();
    return names;
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
    // A compositor that lives accepts at once, however busy it is: the kernel does it.
    constexpr std::chrono::seconds patience(2);
    const LocalSocket server(QFile::encodeName(socketPath), QDeadlineTimer(patience));
    return server.state() == LocalSocket::State::connected;
}
