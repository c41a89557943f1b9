// What window managers of X11 are asked for, to get a window before the user's eyes.
#pragma once

#include <QtGlobal>

class QWindow;

/// Asks the window manager to give the shown window the focus, on behalf of what the user did at
/// that time of the X server. Qt would name the time at which it last heard of the user itself.
/// Nothing happens where the program is not on X11.
void requestActiveWindow(const QWindow &window, quint32 userTime);

/// Moves the window to the workspace that the user is on, if it is on another. Most window managers
/// only mark a window of another workspace that asks for the focus. Nothing happens where the
/// program is not on X11.
void moveToCurrentWorkspace(const QWindow &window);
