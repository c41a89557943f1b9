#include "platform/linux/base/Session.h"

#include "platform/linux/base/LocalSocket.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QRegularExpression>
#include <chrono>

using namespace Qt::StringLiterals;

namespace
{
struct KnownDesktop {
    /// What the session calls itself, in whatever case.
    QLatin1StringView sessionName;
    Desktop desktop;
    /// What users call it.
    QLatin1StringView name;
};

constexpr KnownDesktop knownDesktops[] = {
    {"GNOME"_L1, Desktop::gnome, "GNOME"_L1},
    {"ubuntu"_L1, Desktop::gnome, "GNOME"_L1},
    {"Unity"_L1, Desktop::gnome, "Unity"_L1},
    {"Pantheon"_L1, Desktop::gnome, "Pantheon"_L1},
    {"Budgie"_L1, Desktop::budgie, "Budgie"_L1},
    {"KDE"_L1, Desktop::plasma, "Plasma"_L1},
    {"XFCE"_L1, Desktop::xfce, "Xfce"_L1},
    {"X-Cinnamon"_L1, Desktop::cinnamon, "Cinnamon"_L1},
    {"Cinnamon"_L1, Desktop::cinnamon, "Cinnamon"_L1},
    {"MATE"_L1, Desktop::mate, "MATE"_L1},
    {"LXQt"_L1, Desktop::lxqt, "LXQt"_L1},
};

/// The first known desktop that the session names; null if it names none.
const KnownDesktop *knownDesktop(const QProcessEnvironment &environment)
{
    for (const QString &name : environment.value(u"XDG_CURRENT_DESKTOP"_s).split(u':')) {
        for (const KnownDesktop &known : knownDesktops) {
            if (name.compare(known.sessionName, Qt::CaseInsensitive) == 0)
                return &known;
        }
    }
    return nullptr;
}
} // namespace

SessionType sessionType(const QProcessEnvironment &environment)
{
    if (!environment.value(u"WAYLAND_DISPLAY"_s).isEmpty()
        || environment.value(u"XDG_SESSION_TYPE"_s) == u"wayland")
        return SessionType::wayland;
    return environment.value(u"DISPLAY"_s).isEmpty() ? SessionType::none : SessionType::x11;
}

std::optional<Desktop> currentDesktop(const QProcessEnvironment &environment)
{
    const KnownDesktop *const found = knownDesktop(environment);
    return found ? std::optional(found->desktop) : std::nullopt;
}

std::optional<QString> currentDesktopName(const QProcessEnvironment &environment)
{
    const KnownDesktop *const found = knownDesktop(environment);
    return found ? std::optional<QString>(found->name) : std::nullopt;
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
