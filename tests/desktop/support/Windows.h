// What windows there are on the X server, as window managers and taskbars know them.
#pragma once

#include <QRect>
#include <QString>
#include <optional>
#include <xcb/xcb.h>

/// The window that has the focus, and its title; nothing and empty if none has.
std::optional<xcb_window_t> activeWindow();
QString activeTitle();

/// The window with that title, if it is on the screen.
std::optional<xcb_window_t> windowOnScreen(const QString &title);

/// Where it is on the screen, without its frame.
QRect geometryOf(xcb_window_t window);

/// Moves its content there, wherever the frame begins.
void moveWindow(xcb_window_t window, const QPoint &place);

/// Gives its content that size, as far as it lets be done with it.
void resizeWindow(xcb_window_t window, const QSize &size);

/// Workspaces are counted from 0.
void setWorkspaces(int count);
void switchToWorkspace(int workspace);
int currentWorkspace();

/// The one that the window is on; -1 if the window manager does not tell.
int workspaceOf(xcb_window_t window);

/// Asks for what a click on the button of the frame asks for.
void closeWindow(xcb_window_t window);
void minimizeWindow(xcb_window_t window);
