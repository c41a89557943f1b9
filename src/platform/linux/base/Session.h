// The kind of desktop session that the program was started in.
#pragma once

#include <QByteArrayList>
#include <QProcessEnvironment>
#include <QString>
#include <optional>

enum class SessionType {
    x11,
    wayland,
    /// There is no display at all.
    none,
};

/// Reads the session's own variables, not DISPLAY alone: a Wayland session has an X server too, and
/// grabs there would only work while an X11 window has the focus.
SessionType sessionType(const QProcessEnvironment &environment);

/// The desktops that get special treatment.
enum class Desktop {
    /// Includes the desktops related to it.
    gnome,
    budgie,
    plasma,
    xfce,
    cinnamon,
    mate,
    lxqt,
};

/// The first known desktop among the names that the session gives itself; nothing if none is known.
std::optional<Desktop> currentDesktop(const QProcessEnvironment &environment);

/// What users call that desktop; nothing if none is known. Related desktops have different names.
std::optional<QString> currentDesktopName(const QProcessEnvironment &environment);

/// Identifies the session among those of the user: the path of its Wayland socket and the name of
/// its X display. A program in the session may know only one of them.
QByteArrayList displayNames(const QProcessEnvironment &environment);

/// The path of the Wayland compositor's socket.
QString waylandSocketPath(const QProcessEnvironment &environment);

/// Whether a server accepts connections on that socket.
bool acceptsConnections(const QString &socketPath);
