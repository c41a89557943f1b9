// What kind of desktop session the program was started in.
#pragma once

#include <QProcessEnvironment>
#include <QString>

enum class SessionType {
    x11,
    wayland,
    /// There is no display at all.
    none,
};

/// Decided by the session's own variables, not by DISPLAY alone: a Wayland session has an X
/// server too, and grabs there would only work while an X11 window has the focus.
SessionType sessionType(const QProcessEnvironment &environment);

/// Where the session's Wayland compositor listens.
QString waylandSocketPath(const QProcessEnvironment &environment);

/// Whether a server accepts a connection there.
bool acceptsConnections(const QString &socketPath);
