// X11 startup notification: lets the windows of started programs take the focus.
#pragma once

#include <QByteArray>
#include <QString>
#include <QtGlobal>
#include <optional>

/// Describes a starting application to the desktop.
struct StartingApp {
    QString name;
    QString icon;
    QString program;
    /// The class of its future window, if known.
    QString windowClass;
};

namespace StartupNotification
{

/// Makes a DESKTOP_STARTUP_ID. It carries the X server time of the user's action; window managers
/// use that to decide whether the new window may have the focus.
QByteArray newId(quint32 userTime);

/// The time that an id carries, whichever program made it; nothing if it carries none.
std::optional<quint32> userTime(const QByteArray &id);

/// Tells the desktop that the application is starting, so that it can show so until the first
/// window appears. Only for applications that report when that has happened.
void announce(const QByteArray &id, const StartingApp &app);

/// Tells the desktop that the start is over, for starts where no new window reports so. Does
/// nothing for an empty id.
void finish(const QByteArray &id);

} // namespace StartupNotification
