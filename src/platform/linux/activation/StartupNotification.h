// How windows of started programs are known on X11 to be what the user asked for.
#pragma once

#include "platform/linux/activation/StartingApp.h"

#include <QByteArray>
#include <QtGlobal>
#include <optional>

namespace StartupNotification
{

/// A fresh DESKTOP_STARTUP_ID. It carries the time of the user's action, in the server's time, by
/// which window managers decide whether the new window may have the focus.
QByteArray newId(quint32 userTime);

/// The time that an id carries, whoever made it; nothing if it carries none.
std::optional<quint32> userTime(const QByteArray &id);

/// Tells the desktop that the application is on its way, so that it can show so until the first
/// window comes. Only for applications that then say so.
void announce(const QByteArray &id, const StartingApp &app);

/// Tells the desktop that the start is over, where no new window says so. Nothing happens for an
/// empty id.
void finish(const QByteArray &id);

} // namespace StartupNotification
