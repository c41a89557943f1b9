// Which window has the focus on X11.
#pragma once

#include <QtGlobal>

class QWindow;

/// Asks the window manager to give the shown window the focus, on behalf of what the user did at
/// that time of the X server. Qt would name the time at which it last heard of the user itself.
/// Nothing happens where the program is not on X11.
void requestActiveWindow(const QWindow &window, quint32 userTime);
