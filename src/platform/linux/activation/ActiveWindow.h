// Requests to X11 window managers that bring a window to the user's attention.
#pragma once

#include <QtGlobal>

class QWindow;

/// Asks the window manager to focus the shown window on behalf of the user action at that X server
/// time. Qt's own request would carry the time of the last user event that Qt itself saw. Does
/// nothing if the program does not run on X11.
void requestActiveWindow(const QWindow &window, quint32 userTime);

/// Moves the window to the current workspace if it is on another one. Most window managers do not
/// focus a window on another workspace on request; they only mark it. Does nothing if the program
/// does not run on X11.
void moveToCurrentWorkspace(const QWindow &window);
