// What kind of desktop session the program was started in.
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

/// Decided by the session's own variables, not by DISPLAY alone: a Wayland session has an X
/// server too, and grabs there would only work while an X11 window has the focus.
SessionType sessionType(const QProcessEnvironment &environment);

/// The desktops that we know more of than what all have in common.
enum class Desktop {
    /// And its relatives.
    gnome,
    budgie,
    plasma,
    xfce,
    cinnamon,
    mate,
    lxqt,
};

/// The first that we know of those that the session calls itself; nothing if we know none.
std::optional<Desktop> currentDesktop(const QProcessEnvironment &environment);

/// What tells the session from others of the user: the path of its Wayland socket, and the name of
/// its X display. A program in the session may know either one only.
QByteArrayList displayNames(const QProcessEnvironment &environment);

/// Where the session's Wayland compositor listens.
QString waylandSocketPath(const QProcessEnvironment &environment);

/// Whether a server accepts a connection there.
bool acceptsConnections(const QString &socketPath);
